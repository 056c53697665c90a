#pragma once

#include "contract/components.h"

namespace kelvane {

/// Commands need a link that is up and remote control.
inline bool takesCommands(ReceiverComponent& component, Index rx) {
  return component.IsRxOnline(rx) && component.GetRxRemote(rx);
}

/// The receiver that the panel shows (`nReceiver`), and the questions that every unit asks of it.
class ShownReceiver {
 public:
  explicit ShownReceiver(ReceiverComponent& component) : component_(component) {}

  Index index() const { return nReceiver_; }
  void show(Index rx) {
    nReceiver_ = rx;
    exists_ = true;
  }
  /// There is no receiver: none is online, and nobody is asked.
  void showNone() {
    nReceiver_ = 0;
    exists_ = false;
  }
  bool exists() const { return exists_; }

  /// The receiver answers.
  bool online() const { return exists_ && component_.IsRxOnline(nReceiver_); }
  /// The remote-state test: the receiver is under remote control.
  bool remote() const { return exists_ && component_.GetRxRemote(nReceiver_); }
  /// The operator's commands are kept from it.
  bool locked() const { return !exists_ || !takesCommands(component_, nReceiver_); }
  /// An event for receiver rx belongs on the display.
  bool shows(Index rx) const { return rx == nReceiver_ && online(); }

 private:
  ReceiverComponent& component_;
  Index nReceiver_ = 0;
  bool exists_ = false;
};

}  // namespace kelvane
