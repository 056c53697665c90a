#pragma once

#include "frequency/cls_frq_digit.h"
#include "receiver/shown_receiver.h"
#include "ui/control_events.h"

namespace kelvane {

/// The HF filter's label (`HFF`): shown where the receiver has one, and switched by a click.
class HfFilter {
 public:
  HfFilter(Control& HFF, ReceiverComponent& component, ShownReceiver& shown);

  void receiverSelected();
  void updated(Long state);
  void click();

 private:
  Control& HFF_;
  ReceiverComponent& component_;
  ShownReceiver& shown_;
};

/// The BFO read-out (`FrqBfo`) beside the digit row; a click moves the offset by 100 Hz.
class BfoLabel {
 public:
  BfoLabel(clsFrqDigit& row, ReceiverComponent& component, ShownReceiver& shown)
      : row_(row), component_(component), shown_(shown) {}

  void receiverSelected();
  /// Whether the mode that the receiver is in uses the BFO.
  void modeChanged();
  void updated(Hz offset) { row_.BFO(offset); }
  /// Up with the left button, else down. The receiver keeps the offset within its limits.
  void click(MouseButton button);

 private:
  clsFrqDigit& row_;
  ReceiverComponent& component_;
  ShownReceiver& shown_;
};

}  // namespace kelvane
