#pragma once

#include <array>
#include <string_view>

#include "receiver/shown_receiver.h"
#include "ui/companions.h"
#include "ui/control.h"
#include "ui/window_commands.h"

namespace kelvane {

/// What opens the windows beside the main one, for the keys and for the row of buttons alike.
class Openers {
 public:
  static constexpr int kButtons = 8;

  Openers(std::array<Control, kButtons>& Opener, ReceiverComponent& receiver,
          FrequencyComponent& frequency, ShownReceiver& shown, Companions& windows,
          WindowCommands& window);

  /// Shows the buttons whose windows there are, and enables those that would do something now.
  void refresh();
  /// A button was clicked: does what its key does where no number is typed.
  void click(int button);

  /// The channel memories; nothing for a receiver that has none.
  void channels();
  void log() { windows_.open(Companion::Log); }
  void logAndRecord() { windows_.open(Companion::LogAndRecord); }
  void knownList() { frequency_.ShowFrqKnownList(); }
  /// The stations' data; the keyboard stays with the panel, where a number may follow.
  void dataView();
  void editSource() { frequency_.EditFrqDatabase(); }
  void overview() { windows_.open(Companion::Overview); }
  void traces() { windows_.open(Companion::Traces); }
  void help() { windows_.open(Companion::Help); }

 private:
  struct Button;
  static const std::array<Button, kButtons>& buttons();
  bool usable(const Button& button) const;

  std::array<Control, kButtons>& Opener_;
  ReceiverComponent& receiver_;
  FrequencyComponent& frequency_;
  ShownReceiver& shown_;
  Companions& windows_;
  WindowCommands& window_;
};

}  // namespace kelvane
