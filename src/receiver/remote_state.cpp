#include "receiver/remote_state.h"

#include "ui/control_ids.h"

namespace kelvane {

void RemoteState::apply() {
  const bool remote = shown_.remote();
  entry_.lock(shown_.locked());
  view_.FrqBfo.enabled = remote;
  view_.LockImg[0].visible = remote;
  view_.LockImg[1].visible = !remote;
}

void RemoteState::set(bool remote) {
  if (!shown_.online()) return;
  window_.focus(id::FrqFocus);
  component_.SetRxRemote(shown_.index(), remote);
}

}  // namespace kelvane
