#include "panel/receiver_refresh.h"

#include "settings/title.h"

namespace kelvane {

void ReceiverRefresh::otherReceiver() {
  units_.entry.otherReceiver();
  units_.indicators.otherReceiver();
  units_.levels.otherReceiver();
  units_.buttons.otherReceiver();
  units_.navigation.clearBank();
}

void ReceiverRefresh::run() {
  units_.dde.receiverSelected();
  units_.entry.receiverSelected();
  settings(shown_.online());
  frequency(component_.GetRxFrequency(shown_.index(), kTuned), Apply::No);
  caption();
}

void ReceiverRefresh::settings(bool online) {
  units_.remote.apply();
  units_.status.show(shown_.index(), online);
  if (online)
    units_.indicators.live();
  else
    units_.indicators.blank();
  units_.levels.receiverSelected();
  units_.forwarding.receiverSelected();
  units_.buttons.Update(shown_.index());
  units_.bfo.receiverSelected();
  units_.hfFilter.receiverSelected();
  units_.channels.receiverSelected();
}

void ReceiverRefresh::frequency(Hz frequency, Apply apply) {
  units_.entry.arrived(frequency);
  units_.best.refresh(frequency, apply);
  units_.channelized.show(frequency);
}

void ReceiverRefresh::caption() {
  view_.caption = programTitle() + " " + component_.GetRxName(shown_.index()).value();
  const Text type = component_.GetRxType(shown_.index());
  if (!type.empty()) view_.caption += " [Type: " + type + "]";
}

void ReceiverRefresh::none() {
  otherReceiver();
  units_.remote.apply();
  units_.entry.arrived(-1);
  units_.status.show(0, false);
  units_.best.refresh(-1, Apply::No);
  view_.FAlt.text.clear();
  view_.FrqBfo.text.clear();
  for (Control* own : {&view_.HFF, &view_.IChn, &view_.VChn}) own->visible = false;
  view_.caption = programTitle() + " NONE";
}

}  // namespace kelvane
