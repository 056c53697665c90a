#pragma once

#include <string>

#include "frequency/digit_server.h"
#include "frequency/dtmf_digits.h"
#include "receiver/shown_receiver.h"
#include "settings/options.h"
#include "ui/control.h"
#include "ui/window_commands.h"

namespace kelvane {

/// Tunes every receiver by digits that a program elsewhere on the computer sends, and shows in
/// `DDESts` how the shown receiver's link with it stands.
class DdeLink {
 public:
  DdeLink(Control& DDESts, DigitServers& servers, ReceiverComponent& component,
          ShownReceiver& shown, const Options& options, WindowCommands& window);

  /// Opens or closes the links as the options now say.
  void apply();
  /// Receivers came, went, moved or were renamed.
  void receiversChanged(const ReceiverMoves& moves);
  /// Another receiver is shown.
  void receiverSelected();
  /// One tick of the blink timer; every second one refreshes the links.
  void blink();

 private:
  std::string serverOf(Index rx) const;
  void received(Index rx, const std::string& text);
  void show();

  Control& DDESts_;
  DigitServers& servers_;
  ReceiverComponent& component_;
  ShownReceiver& shown_;
  const Options& options_;
  WindowCommands& window_;
  DtmfDigits digits_;
  int ticks_ = 0;
};

}  // namespace kelvane
