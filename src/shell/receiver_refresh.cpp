#include "shell/receiver_refresh.h"

#include "shell/title.h"

namespace kelvane {

void ReceiverRefresh::run() {
  units_.dde.receiverSelected();
  units_.entry.receiverSelected();
  units_.remote.apply();
  const bool online = shown_.online();
  units_.status.show(shown_.index(), online);
  if (!online) units_.indicators.blank();
  units_.forwarding.receiverSelected();
  units_.buttons.Update(shown_.index());
  units_.bfo.receiverSelected();
  caption();
  units_.hfFilter.receiverSelected();
  units_.channels.receiverSelected();
  frequency(component_.GetRxFrequency(shown_.index(), kTuned), Apply::No);
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
  units_.remote.apply();
  units_.entry.arrived(-1);
  units_.status.show(0, false);
  units_.indicators.blank();
  view_.caption = programTitle() + " NONE";
}

}  // namespace kelvane
