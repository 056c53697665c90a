#pragma once

#include "frequency/cls_frq_digit.h"
#include "receiver/shown_receiver.h"

namespace kelvane {

/// The channelized frequency (`FAlt`), fixed or tied to the filter, and the digits' colours below
/// the boundary of channelized tuning.
class Channelized {
 public:
  Channelized(Control& FAlt, clsFrqDigit& row, ReceiverComponent& component, ShownReceiver& shown);

  /// Shows what belongs to a tuned frequency.
  void show(Hz tuned);
  /// Changes between fixed and filter-tied.
  void toggle();

 private:
  void showState();

  Control& FAlt_;
  clsFrqDigit& row_;
  ReceiverComponent& component_;
  ShownReceiver& shown_;
  bool filterTied_ = true;
};

}  // namespace kelvane
