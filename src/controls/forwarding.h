#pragma once

#include <array>

#include "receiver/receiver_set.h"
#include "receiver/shown_receiver.h"
#include "ui/control.h"

namespace kelvane {

/// The buttons that let receivers follow one another. The component does the forwarding; this
/// chooses the mode, shows it, and remembers which receiver is master. Off at the start.
class Forwarding {
 public:
  static constexpr int kButtons = 3;
  enum Button : int { Master, All, NotUsed };

  Forwarding(std::array<Control, kButtons>& GenEvent, ReceiverComponent& component,
             ShownReceiver& shown);

  /// A button was pressed: the one that is down is released by it. The spare one does nothing.
  void click(int button);
  /// Another receiver is shown: the master button's colour tells whether it is the master.
  void receiverSelected();
  /// No forwarding; both buttons are released.
  void off();
  /// What the component was told last: kForwardNone, kForwardAll or the master's index.
  Long mode() const { return mode_; }
  /// Forwarding needs somebody to forward to.
  void receivers(Count count);
  /// Receivers came, went or moved. The master stays master, wherever it is now; without it there
  /// is no forwarding.
  void receiversChanged(const ReceiverMoves& moves);

 private:
  void tell(Long mode);
  void pressMaster();
  void pressAll();

  std::array<Control, kButtons>& GenEvent_;
  ReceiverComponent& component_;
  ShownReceiver& shown_;
  std::array<bool, kMostReceivers> master_{};
  Long mode_ = kForwardNone;
};

}  // namespace kelvane
