#pragma once

#include "settings/options.h"
#include "ui/window_commands.h"

namespace kelvane {

/// The signal that a command was refused: a beep, where the option wants one.
class Refusal {
 public:
  Refusal(const Options& options, WindowCommands& window) : options_(options), window_(window) {}

  void signal() {
    if (options_.OptBeep) window_.beep();
  }

 private:
  const Options& options_;
  WindowCommands& window_;
};

}  // namespace kelvane
