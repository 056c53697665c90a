#include "levels/level_clock.h"

#include <algorithm>
#include <chrono>
#include <cmath>
#include <cstdlib>
#include <iterator>

namespace kelvane {

namespace {

/// A wall clock that is ahead of the steady one by more than this was set, or the computer slept.
constexpr WallTime kSkip = 2000;
/// Nobody sets a clock by less to see it, and no computer sleeps longer with its program open.
constexpr WallTime kLongestSleep = 24LL * 3'600'000;
/// The steady clock may count a sleep too: nothing was heard for so long, ms.
constexpr WallTime kPause = 30'000;
/// By how much UTC may be wrong before the difference of the clocks is taken anew, ms.
constexpr WallTime kTolerance = 20;
constexpr std::size_t kMostSettings = 1000;

}  // namespace

LevelTime LevelClock::at(Instant steady, WallTime wall) {
  if (settings_.empty()) {
    now_ = wall;
    steady_ = steady;
    settings_.push_back({now_, 0});
  } else {
    const WallTime elapsed = wholeMilliseconds(steady);
    const WallTime skipped = wall - wallTime_ - elapsed;
    const bool passedOver = skipped > kSkip && skipped <= kLongestSleep;
    now_ += elapsed + (passedOver ? skipped : 0);
    slept_ = passedOver || elapsed > kPause;
  }
  wallTime_ = wall;
  const WallTime difference = wall - now_;
  if (std::abs(difference - settings_.back().difference) > kTolerance)
    settings_.push_back({now_, difference});
  if (settings_.size() > kMostSettings) settings_.pop_front();
  return now_;
}

/// What the steady clock went on by since it was asked last. Part of a millisecond is kept for the
/// next time: asked hundreds of times a second, the clock would else lose a tenth of all time.
WallTime LevelClock::wholeMilliseconds(Instant steady) {
  const auto elapsed = std::chrono::duration_cast<milliseconds>(steady - steady_);
  if (elapsed.count() <= 0) return 0;
  steady_ += elapsed;
  return elapsed.count();
}

WallTime LevelClock::utc(LevelTime time) const {
  const auto after = std::ranges::upper_bound(settings_, time, {}, &Setting::since);
  if (after == settings_.begin()) return time + (settings_.empty() ? 0 : after->difference);
  return time + std::prev(after)->difference;
}

}  // namespace kelvane
