#pragma once

#include "base/safe_file.h"

namespace kelvane::fakes {

/// A disk that nobody but the test uses: to wait for other programs there takes no time. What the
/// waiting is for has tests with disks of their own.
struct UnwaitingDisk : FileSteps {
  void pause(milliseconds) override {}
};

}  // namespace kelvane::fakes
