#pragma once

#include "controls/navigation.h"

namespace kelvane {

/// What the panel does with each event of the frequency component.
class FrqEvents : public FrequencyListener {
 public:
  FrqEvents(ReceiverComponent& component, ShownReceiver& shown, Navigation& navigation,
            BestSetting& best, Refusal& refusal)
      : component_(component),
        shown_(shown),
        navigation_(navigation),
        best_(best),
        refusal_(refusal) {}

  /// Tunes the shown receiver as if its frequency had been typed, with mode and filter; refused
  /// where the operator's commands are kept from it or it cannot tune there.
  void FrqSelected(Hz frequency, Setting mode, Setting filter) override;
  /// Looks up anew what is known of the tuned frequency.
  void FrqDataUpdated() override;

 private:
  ReceiverComponent& component_;
  ShownReceiver& shown_;
  Navigation& navigation_;
  BestSetting& best_;
  Refusal& refusal_;
};

}  // namespace kelvane
