#pragma once

#include "base/time.h"

namespace kelvane {

/// A repeating timer that is told the time. It never fires twice for one call of `fired`, however
/// late the call comes: missed periods are dropped, not made up for.
class Timer {
 public:
  /// Starts it, or gives a running one another interval; the next firing is then one interval on.
  void start(milliseconds interval, Instant now) {
    if (running() && interval == interval_) return;
    interval_ = interval;
    due_ = now + interval;
  }
  void stop() { due_ = kNever; }

  bool running() const { return due_ != kNever; }
  milliseconds interval() const { return interval_; }
  Instant due() const { return due_; }

  /// Whether a period has ended by now; the next one begins.
  bool fired(Instant now) {
    if (now < due_) return false;
    due_ = now + interval_;
    return true;
  }

 private:
  milliseconds interval_{0};
  Instant due_ = kNever;
};

}  // namespace kelvane
