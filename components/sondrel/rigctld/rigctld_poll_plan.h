#pragma once

#include <array>
#include <optional>

#include "components/sondrel/rigctld/rigctld_types.h"

namespace kelvane::sondrel {

/// How often a radio is asked, and how much of its line that may take.
struct PollRates {
  double pace = 1.0;   ///< 2 asks twice as often, 0.5 half as often as usual
  double share = 0.6;  ///< the most of the time that the line may be busy with polling, 0 to 1
};

/// Which value is to be read next.
///
/// Each item has an interval, for the receiver that the operator looks at and for the others. After
/// each poll the line rests in proportion to the time that the answer took, so that a slow radio is
/// asked less often by itself; what is asked then is shared in proportion to the intervals.
class PollPlan {
 public:
  explicit PollPlan(PollRates rates) : rates_(rates) {}

  /// Polls these items from now on.
  void start(RigItems items, Instant now);
  void setShown(bool shown) { shown_ = shown; }
  /// The item to ask now, which counts as asked; none when nothing is due or the line rests.
  std::optional<RigItem> take(Instant now);
  /// A reply came to what was sent at that time.
  void answered(Instant sent, Instant now);
  /// Asks the item as soon as the line is free, without rest.
  void readNext(RigItem item);
  /// No setting is asked before that time: only frequency, mode and meter.
  void holdSettings(Instant until) { settingsFrom_ = until; }
  /// Until then the line rests.
  Instant restUntil() const { return restUntil_; }
  /// When take() may have something; kNever when nothing is polled.
  Instant nextDue() const;

 private:
  milliseconds interval(RigItem item) const;
  Instant dueAt(RigItem item) const;

  PollRates rates_;
  RigItems items_;
  RigItems readNext_;
  std::array<Instant, kRigItems> due_{};
  Instant restUntil_{};
  Instant settingsFrom_{};
  bool shown_ = false;
};

}  // namespace kelvane::sondrel
