#pragma once

#include <deque>

#include "base/time.h"
#include "base/wall_time.h"

namespace kelvane {

/// A moment of the levels' own time, ms: it never goes back, whatever is done to the computer's
/// clock, and counts the time that the computer slept.
using LevelTime = std::int64_t;

/// The levels' time, made of the computer's two clocks: the steady one, which may stand still while
/// the computer sleeps, and the wall clock, which may be set.
class LevelClock {
 public:
  /// The present moment. `slept` answers whether time was passed over since the last call: readings
  /// before and after it do not belong together.
  LevelTime at(Instant steady, WallTime wall);
  bool slept() const { return slept_; }
  LevelTime now() const { return now_; }

  /// UTC of a moment, as the clock was set then.
  WallTime utc(LevelTime time) const;

 private:
  /// From `since` on UTC is the levels' time plus `difference`.
  struct Setting {
    LevelTime since;
    WallTime difference;
  };

  WallTime wholeMilliseconds(Instant steady);

  std::deque<Setting> settings_;
  Instant steady_{};  ///< up to where it was counted
  WallTime wallTime_ = 0;
  LevelTime now_ = 0;
  bool slept_ = false;
};

}  // namespace kelvane
