#pragma once

#include <array>

#include "receiver/shown_receiver.h"
#include "ui/control.h"

namespace kelvane {

/// What the shown receiver measures: S-meter, squelch and the auxiliary IO lines.
class Indicators {
 public:
  static constexpr int kLines = 4;

  Indicators(Control& SM, Control& SQ, std::array<Control, kLines>& IO,
             ReceiverComponent& component, ShownReceiver& shown);

  void meter(Long level, const Text& reading);
  void setSquelch(Long state) { SQ_.visible = state == 1; }
  /// Shows the IO lines that the receiver has, in their colours.
  void lines();
  /// The shown receiver answers: shows its squelch, which reports only changes.
  void live();
  /// What is not live is not shown.
  void blank();
  /// Another receiver is shown from now on; nothing of the former one's stays.
  void otherReceiver();

  /// Changes between the reading in S units and the numeric level.
  void toggleMeter();
  /// The level is shown as a number.
  bool numeric() const { return numeric_; }
  /// Switches a line over; the display follows with the component's event.
  void toggleLine(int line);

 private:
  Control& SM_;
  Control& SQ_;
  std::array<Control, kLines>& IO_;
  ReceiverComponent& component_;
  ShownReceiver& shown_;
  bool numeric_ = false;
};

}  // namespace kelvane
