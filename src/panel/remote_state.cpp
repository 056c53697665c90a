#include "panel/remote_state.h"

#include "ui/control_ids.h"

namespace kelvane {

void RemoteState::apply() {
  const bool remote = shown_.remote();
  const bool locked = shown_.locked();
  entry_.lock(locked);
  buttons_.LockAll(locked);
  for (Control* label :
       {&view_.FrqBfo, &view_.BFlt, &view_.BMod, &view_.IChn, &view_.VChn, &view_.HFF})
    label->enabled = !locked;
  view_.LockImg[0].visible = remote;
  view_.LockImg[1].visible = !remote;
  indicators_.lines();
  openers_.refresh();
}

void RemoteState::set(bool remote) {
  if (!shown_.online()) return;
  window_.focus(id::FrqFocus);
  component_.SetRxRemote(shown_.index(), remote);
}

}  // namespace kelvane
