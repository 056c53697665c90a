#pragma once

#include <array>

#include "receiver/receiver_set.h"
#include "ui/timer.h"

namespace kelvane {

/// Asks again for links that failed: the update timer `TimUpd` visits one receiver a tick.
class LinkRetry {
 public:
  explicit LinkRetry(ReceiverComponent& component) : component_(component) {}

  /// Starts the timer for N receivers: each is visited about twice a second.
  void start(Count receivers, Instant now);
  /// A link reported a code: marks or clears the receiver's failed flag and sets the timer's pace.
  void reported(Index rx, Long code, Instant now);
  /// Receivers came, went or moved; one that failed and is still there has failed.
  void receiversChanged(const ReceiverMoves& moves, Instant now);

  /// One period of the timer when it has ended: asks the receiver whose turn it is for a new link.
  /// Answers whether a link was asked for, so that the caller lets pending events run.
  bool tick(Instant now);

  bool failed(Index rx) const { return failed_[rx]; }
  const Timer& timer() const { return TimUpd_; }

 private:
  void pace(Count receivers, Instant now);

  ReceiverComponent& component_;
  Timer TimUpd_;
  std::array<bool, kMostReceivers> failed_{};
  Index next_ = 0;
};

}  // namespace kelvane
