#pragma once

#include <array>

#include "receiver/receiver_set.h"
#include "receiver/shown_receiver.h"
#include "ui/control.h"
#include "ui/control_events.h"

namespace kelvane {

/// The two tuning steps: the operator's own, kept for each receiver, and the band plan's.
class Stepping {
 public:
  Stepping(std::array<Control, 2>& VStep, std::array<Control, 2>& IStep,
           ReceiverComponent& component, FrequencyComponent& frequency, ShownReceiver& shown);

  /// Shows both steps, neither above what the receiver can do; no band plan's step where the
  /// receiver's frequency is not known.
  void refresh();
  /// Receivers came, went or moved; each keeps its own step.
  void receiversChanged(const ReceiverMoves& moves);
  /// A click on a step: the operator's own moves by 100 Hz, up with the left button.
  void click(int index, MouseButton button);
  /// The operator's step of the shown receiver, Hz; one of 0 or less is none, and changes nothing.
  void setDefault(Hz step);

  /// The steps as they are shown, Hz.
  Hz defaultStep() const;
  Hz bandStep() const;
  /// The operator's step of any receiver, Hz.
  Hz stepOf(Index rx) const;

 private:
  std::array<Control, 2>& VStep_;
  ReceiverComponent& component_;
  FrequencyComponent& frequency_;
  ShownReceiver& shown_;
  std::array<Hz, kMostReceivers> own_;
};

}  // namespace kelvane
