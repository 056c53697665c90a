#pragma once

#include "base/time.h"

namespace kelvane::fakes {

/// A clock that only the test moves.
struct HandClock {
  Instant now = Instant(std::chrono::hours(1000));

  void advance(milliseconds time) { now += time; }
};

}  // namespace kelvane::fakes
