#include "components/sondrel/rigctld/rigctld_readings.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <limits>

namespace kelvane::sondrel {

namespace {

// A server may answer from a store of half a second, a program may take a while to act: the value
// from before an order is believed only when it still stands after this time.
constexpr milliseconds kConfirmedWithin{600};
constexpr milliseconds kBetweenReadBacks{100};
// What the radio itself makes of an order has shown by the end of this time, the store included.
constexpr milliseconds kFollowsWithin{1000};
// A radio rounds to its raster or moves by a CW pitch; a hand at the knob soon goes farther.
constexpr std::int32_t kRounding = 1000;

bool isNear(std::int32_t a, std::int32_t b) { return std::abs(std::int64_t{a} - b) <= kRounding; }

}  // namespace

void RigctldReadings::restart() {
  known_ = wereRead_ = {};
  awaited_ = {};
  ownChangeUntil_ = {};
  retune_.reset();
}

void RigctldReadings::learn(std::shared_ptr<const RigctldCapabilities> can, bool reportAll) {
  const auto shown = number(RigItem::Frequency);
  can_ = std::move(can);
  if (reportAll) reports_.clear();
  if (known(RigItem::Mode) && reportAll) report(RigItem::Mode, Cause::Learned);
  // Whether the BFO is an offset of the tuning depends on what the radio can do.
  if (known(RigItem::Frequency) && (reportAll || number(RigItem::Frequency) != shown)) {
    report(RigItem::Frequency, Cause::Learned);
  }
  if (reportAll) {
    for (const auto item :
         {RigItem::Strength, RigItem::Squelch, RigItem::SquelchLevel, RigItem::Attenuator,
          RigItem::Agc, RigItem::Blanker, RigItem::Preamp, RigItem::Step}) {
      if (known(item)) report(item, Cause::Learned);
    }
    report(RigItem::Bfo, Cause::Learned);
  } else {
    reportBfo(Cause::Learned);
  }
  deriveSquelch(Cause::Learned);
}

bool RigctldReadings::take(RigItem item, const Reply& reply, Instant now) {
  if (item == RigItem::Mode) {
    const auto read = readMode(reply);
    if (read) takeMode(*read, now);
    return read.has_value();
  }
  const auto read = readNumber(item, reply);
  if (read) takeNumber(item, *read, now);
  return read.has_value();
}

void RigctldReadings::unreadable(RigItem item) {
  for (auto& awaited : awaited_) {
    if (!awaited || awaited->order.reads != item) continue;
    const bool told = wereRead_.has(item);
    if (told) {
      value(item == RigItem::Mode ? RigItem::Filter : item) = read_[at(item)];
      if (item == RigItem::Mode) mode_ = modeRead_;
    }
    // What has never been read stands as the radio accepted it.
    report(awaited->order.request.item, Cause::Request, awaited->order.request.ticket,
           told || awaited->refused);
    awaited.reset();
  }
}

void RigctldReadings::accepted(const RigOrder& order, bool newerWaits, Instant now) {
  const auto item = order.request.item;
  if (item == RigItem::Clock) return;
  if (item == RigItem::Mode) {
    ownChangeUntil_.fill(now + kFollowsWithin);  // radios keep more than the filter with a mode
  } else {
    ownChangeUntil_[at(order.reads)] = now + kFollowsWithin;
  }
  const bool readable = can_->readable.has(order.reads);
  awaited_[at(item)] = readable && !newerWaits ? awaited(order, false, now) : std::nullopt;
  assumeAccepted(order);
  if (!readable) report(item, Cause::Request, order.request.ticket);
}

void RigctldReadings::refused(const RigOrder& order, Instant now) {
  if (can_->readable.has(order.reads) && order.request.item != RigItem::Clock) {
    awaited_[at(order.request.item)] = awaited(order, true, now);
  } else {
    report(order.request.item, Cause::Request, order.request.ticket, true);
  }
}

void RigctldReadings::withoutOrder(const RigRequest& request) {
  if (request.item != RigItem::Bfo || way() != BfoWay::Offset) {
    report(request.item, Cause::Request, request.ticket, true);
    return;
  }
  const auto shown = number(RigItem::Frequency);
  const auto limits = bfoLimits(*can_, BfoWay::Offset, offsetLimit_);
  const auto before = std::exchange(offset_, std::clamp(request.number, limits.low, limits.high));
  reportedBfo_ = offset_;
  report(RigItem::Bfo, Cause::Request, request.ticket);
  if (offset_ != before && known(RigItem::Frequency)) {
    retune_ = RigRequest{RigItem::Frequency, shown, {}, 0};
  }
}

std::optional<RigItem> RigctldReadings::takeReadBack(Instant now) {
  for (auto& awaited : awaited_) {
    if (!awaited || awaited->askAt > now) continue;
    awaited->askAt = now + kBetweenReadBacks;
    return awaited->order.reads;
  }
  return std::nullopt;
}

Instant RigctldReadings::nextReadBack() const {
  Instant next = kNever;
  for (const auto& awaited : awaited_) {
    if (awaited) next = std::min(next, awaited->askAt);
  }
  return next;
}

RigSituation RigctldReadings::situation() const {
  return {known(RigItem::Mode) ? mode_ : std::string(), offset(), offsetLimit_};
}

std::vector<ValueReport> RigctldReadings::takeReports() { return std::exchange(reports_, {}); }

std::optional<RigctldReadings::Awaited> RigctldReadings::awaited(const RigOrder& order,
                                                                 bool refused, Instant now) const {
  Awaited next{order, now + kConfirmedWithin, now, refused};
  // Retuning on its own account must not swallow the answer to the operator's request.
  const auto& older = awaited_[at(order.request.item)];
  if (older && order.request.ticket == 0) next.order.request.ticket = older->order.request.ticket;
  return next;
}

/// The radio said that it took the order: what follows builds on that, and readings that still
/// show the old value are not believed for a while.
void RigctldReadings::assumeAccepted(const RigOrder& order) {
  const auto shown = number(RigItem::Frequency);
  known_.add(order.reads);
  if (order.reads != RigItem::Mode) {
    value(order.reads) = order.wanted;
    if (order.reads == RigItem::Frequency) tuned_ = order.wanted;
    return;
  }
  if (order.wanted > 0) value(RigItem::Filter) = order.wanted;
  if (std::exchange(mode_, order.wantedMode) != order.wantedMode) {
    modeChanged(Cause::Request, shown);
  }
}

void RigctldReadings::takeNumber(RigItem item, std::int32_t number, Instant now) {
  const bool bfo = item == RigItem::Pitch || item == RigItem::Shift;
  const auto requested = bfo ? RigItem::Bfo : item;
  const auto before = std::exchange(read_[at(item)], number);
  auto& awaited = awaited_[at(requested)];
  const bool answers = awaited && awaited->order.reads == item;
  const bool old = known(item) && number == before && number != value(item);
  if (answers && !awaited->refused && old && now < awaited->until) {
    awaited->askAt = now + kBetweenReadBacks;
    return;
  }
  const bool first = !known(item);
  // A meter is a stream: the same reading again says that it was read.
  const bool news = first || number != value(item) || item == RigItem::Strength;
  const auto cause = first ? Cause::Learned : causeOf(item, number, now);
  value(item) = number;
  known_.add(item);
  wereRead_.add(item);
  if (answers) {
    settle(requested);
  } else if (bfo) {
    reportBfo(cause);
  } else if (news) {
    report(item, cause);
  }
  if (item == RigItem::Strength || item == RigItem::SquelchLevel) deriveSquelch(cause);
}

void RigctldReadings::takeMode(const ModeAndWidth& read, Instant now) {
  const bool first = !known(RigItem::Mode);
  const bool oldMode = read.mode == std::exchange(modeRead_, read.mode) && read.mode != mode_;
  const bool sameWidth = read.width == std::exchange(read_[at(RigItem::Mode)], read.width);
  const bool oldWidth = sameWidth && read.width != value(RigItem::Filter);
  auto& mode = awaited_[at(RigItem::Mode)];
  auto& filter = awaited_[at(RigItem::Filter)];
  for (auto* awaited : {&mode, &filter}) {
    if (*awaited) (*awaited)->askAt = now + kBetweenReadBacks;
  }
  if (!first && oldMode && mayStillChange(mode, now)) return;
  // Servers were seen to answer the new mode with the old width for half a second.
  if (!first && oldWidth && mayStillChange(mode, now) && mode->order.wanted > 0 && !filter) {
    filter = mode;
    filter->order.request = {RigItem::Filter, mode->order.wanted, {}, 0};
  }
  const bool stale = !first && oldWidth && mayStillChange(filter, now);
  const bool modeNews = first || read.mode != mode_;
  const bool widthNews = !stale && read.width > 0 && read.width != value(RigItem::Filter);
  const auto cause = first ? Cause::Learned : causeOf(RigItem::Mode, 0, now);
  const auto shown = number(RigItem::Frequency);
  mode_ = read.mode;
  known_.add(RigItem::Mode);
  wereRead_.add(RigItem::Mode);
  if (!stale && (modeNews || widthNews)) value(RigItem::Filter) = read.width;
  if (mode) {
    settle(RigItem::Mode);
  } else if (modeNews) {
    report(RigItem::Mode, cause);
  } else if (widthNews && !filter) {
    report(RigItem::Filter, cause);
  }
  if (filter && !stale) settle(RigItem::Filter);
  if (modeNews) modeChanged(cause, shown);
}

/// Whether a reading that shows the old value may yet become the new one.
bool RigctldReadings::mayStillChange(const std::optional<Awaited>& awaited, Instant now) {
  return awaited && !awaited->refused && now < awaited->until;
}

/// The BFO works in another way in another mode, and with it goes or comes an offset.
void RigctldReadings::modeChanged(Cause cause, std::int32_t shownBefore) {
  reportBfo(cause);
  if (!known(RigItem::Frequency) || number(RigItem::Frequency) == shownBefore) return;
  if (cause == Cause::Request) {
    retune_ = RigRequest{RigItem::Frequency, shownBefore, {}, 0};
  } else {
    report(RigItem::Frequency, cause);
  }
}

/// Answers the request of this item that waits, with the value that has been read.
void RigctldReadings::settle(RigItem requested) {
  const auto answered = std::exchange(awaited_[at(requested)], std::nullopt);
  report(requested, Cause::Request, answered->order.request.ticket, answered->refused);
}

Cause RigctldReadings::causeOf(RigItem item, std::int32_t number, Instant now) const {
  if (now >= ownChangeUntil_[at(item)]) return Cause::AtReceiver;
  if (item != RigItem::Frequency) return Cause::Request;
  const bool close = isNear(number, tuned_) || isNear(number, values_[at(item)]);
  return close ? Cause::Request : Cause::AtReceiver;
}

void RigctldReadings::report(RigItem item, Cause cause, std::uint32_t ticket, bool refused) {
  const bool mode = item == RigItem::Mode;
  reports_.push_back(
      {item, number(item), mode ? mode_ : std::string(), cause, ticket, refused, hasValue(item)});
  if (item == RigItem::Bfo) reportedBfo_ = number(item);
}

bool RigctldReadings::hasValue(RigItem item) const {
  if (item == RigItem::Bfo || item == RigItem::Clock) return true;
  return known(item == RigItem::Filter ? RigItem::Mode : item);
}

void RigctldReadings::reportBfo(Cause cause) {
  if (number(RigItem::Bfo) != reportedBfo_) report(RigItem::Bfo, cause);
}

/// Where a server tells a squelch level but not whether the squelch is open.
void RigctldReadings::deriveSquelch(Cause cause) {
  if (!can_ || can_->readable.has(RigItem::Squelch)) return;
  if (!known(RigItem::SquelchLevel) || !known(RigItem::Strength)) return;
  const auto open = value(RigItem::Strength) >= value(RigItem::SquelchLevel) ? 1 : 0;
  if (known(RigItem::Squelch) && open == value(RigItem::Squelch)) return;
  value(RigItem::Squelch) = open;
  known_.add(RigItem::Squelch);
  report(RigItem::Squelch, cause);
}

/// The value as the contract counts it.
std::int32_t RigctldReadings::number(RigItem item) const {
  switch (item) {
    case RigItem::Frequency:
      return shownFrequency();
    case RigItem::Mode:
      return values_[at(RigItem::Filter)];
    case RigItem::Bfo:
      break;
    default:
      return values_[at(item)];
  }
  switch (way()) {
    case BfoWay::None:
      return 0;
    case BfoWay::Pitch:
      return values_[at(RigItem::Pitch)];
    case BfoWay::Shift:
      return values_[at(RigItem::Shift)];
    case BfoWay::Offset:
      return offset_;
  }
  return 0;
}

std::int32_t RigctldReadings::shownFrequency() const {
  const auto shown = std::int64_t{values_[at(RigItem::Frequency)]} + offset();
  constexpr std::int64_t kMost = std::numeric_limits<std::int32_t>::max();
  return static_cast<std::int32_t>(std::clamp<std::int64_t>(shown, 0, kMost));
}

BfoWay RigctldReadings::way() const { return can_ ? bfoWay(*can_, mode_) : BfoWay::None; }

std::int32_t RigctldReadings::offset() const { return way() == BfoWay::Offset ? offset_ : 0; }

}  // namespace kelvane::sondrel
