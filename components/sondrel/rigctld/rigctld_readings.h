#pragma once

#include <array>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "components/sondrel/rigctld/rigctld_orders.h"

namespace kelvane::sondrel {

/// What is known of a radio's values, and what of it is news.
///
/// A reading that answers an order is reported with the order's ticket. What a radio makes of an
/// order in the moment after it, by rounding or by changing something along with it, is reported as
/// caused by the request; every other change as made at the receiver.
class RigctldReadings {
 public:
  /// `offsetLimit`: most tuning offset, either way, that stands for a BFO.
  explicit RigctldReadings(std::int32_t offsetLimit) : offsetLimit_(offsetLimit) {}

  /// A new link: nothing has been read yet. An offset of the tuning stays.
  void restart();
  /// What the radio can do has been found out, or has grown. Reports all that is known, if asked
  /// to.
  void learn(std::shared_ptr<const RigctldCapabilities> can, bool reportAll);

  /// The reply to reading an item. Answers false for one that holds no value.
  bool take(RigItem item, const Reply& reply, Instant now);
  /// An item could not be read: an order that waits for the reading ends.
  void unreadable(RigItem item);

  /// The radio accepted the order. `newerWaits`: a newer request for the same item is to follow.
  void accepted(const RigOrder& order, bool newerWaits, Instant now);
  void refused(const RigOrder& order, Instant now);
  /// A request that comes to no order: carries out a BFO by offset, refuses what else there is.
  void withoutOrder(const RigRequest& request);
  /// A frequency to tune to, so that what is shown stays when the offset changed.
  std::optional<RigRequest> takeRetune() { return std::exchange(retune_, std::nullopt); }

  /// The item to read again for an order that waits, soonest first; none when none is due.
  std::optional<RigItem> takeReadBack(Instant now);
  Instant nextReadBack() const;

  RigSituation situation() const;
  bool known(RigItem item) const { return known_.has(item); }
  std::vector<ValueReport> takeReports();

 private:
  struct Awaited {
    RigOrder order;
    Instant until;  ///< what is read then is what has come of it
    Instant askAt;
    bool refused = false;
  };

  std::optional<Awaited> awaited(const RigOrder& order, bool refused, Instant now) const;
  static bool mayStillChange(const std::optional<Awaited>& awaited, Instant now);
  void assumeAccepted(const RigOrder& order);
  void takeNumber(RigItem item, std::int32_t number, Instant now);
  void takeMode(const ModeAndWidth& read, Instant now);
  void settle(RigItem requested);
  Cause causeOf(RigItem item, std::int32_t number, Instant now) const;
  void modeChanged(Cause cause, std::int32_t shownBefore);
  void report(RigItem item, Cause cause, std::uint32_t ticket = 0, bool refused = false);
  bool hasValue(RigItem item) const;
  void deriveSquelch(Cause cause);
  void reportBfo(Cause cause);
  std::int32_t number(RigItem item) const;
  std::int32_t& value(RigItem item) { return values_[at(item)]; }
  std::int32_t shownFrequency() const;
  BfoWay way() const;
  std::int32_t offset() const;

  std::int32_t offsetLimit_;
  std::shared_ptr<const RigctldCapabilities> can_;
  // As the radio counts; Filter is the width of the mode. What an accepted order brings is in
  // values_ and mode_ at once; read_ and modeRead_ are what the server said last.
  std::array<std::int32_t, kRigItems> values_{};
  std::array<std::int32_t, kRigItems> read_{};  ///< Mode: the width
  std::string mode_;
  std::string modeRead_;
  std::int32_t offset_ = 0;
  RigItems known_;
  RigItems wereRead_;  ///< of those: read, and not only accepted
  std::array<std::optional<Awaited>, kRigItems> awaited_;  ///< by the item of the request
  std::array<Instant, kRigItems> ownChangeUntil_{};  ///< until when a change is the request's doing
  std::int32_t tuned_ = 0;                           ///< what the radio was last told to tune to
  std::int32_t reportedBfo_ = 0;
  std::optional<RigRequest> retune_;
  std::vector<ValueReport> reports_;
};

}  // namespace kelvane::sondrel
