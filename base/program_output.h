#pragma once

#include <functional>
#include <string>

#include "base/time.h"

namespace kelvane {

/// What a program wrote before it ended.
struct ProgramOutput {
  std::string text;     ///< both of its streams, at most two megabytes
  std::string problem;  ///< why there is no whole text, in words; empty where it ended in time
};

/// Runs a program (as ChildProcess starts it) and waits for its end, at most `limit`; a program
/// that goes on is ended. `stop` is asked every few milliseconds and ends the waiting.
ProgramOutput outputOf(const std::string& line, milliseconds limit,
                       const std::function<bool()>& stop);

}  // namespace kelvane
