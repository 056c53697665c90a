#pragma once

#include <functional>
#include <string>

#include "base/result.h"
#include "base/time.h"

namespace kelvane {

/// Runs a program (as ChildProcess starts it), waits for its end, and answers what it wrote to both
/// of its streams, at most two megabytes. One that goes on for longer than `limit` is ended. `stop`
/// is asked every few milliseconds and ends the waiting.
Result<std::string> outputOf(const std::string& line, milliseconds limit,
                             const std::function<bool()>& stop);

}  // namespace kelvane
