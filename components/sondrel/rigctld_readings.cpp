#include "components/sondrel/rigctld_readings.h"

#include <algorithm>
#include <cstdlib>
#include <limits>

namespace kelvane::sondrel {

namespace {

// A server may answer from a store of half a second, a program may take a while to act: the value
// from before an order is believed only when it still stands after this time.
constexpr milliseconds kPatience{600};
constexpr milliseconds kBetweenReadBacks{100};
// What the radio itself makes of an order has shown by the end of this time, the store included.
constexpr milliseconds kAftermath{1000};
// A radio rounds to its raster or moves by a CW pitch; a hand at the knob soon goes farther.
constexpr std::int32_t kRounding = 1000;

bool near(std::int32_t a, std::int32_t b) { return std::abs(std::int64_t{a} - b) <= kRounding; }

}  // namespace

void RigctldReadings::restart() {
  known_ = {};
  awaited_ = {};
  ours_ = {};
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
    report(awaited->order.request.item, Cause::Request, awaited->order.request.ticket, true);
    awaited.reset();
  }
}

void RigctldReadings::accepted(const RigOrder& order, bool newerWaits, Instant now) {
  const auto item = order.request.item;
  if (item == RigItem::Clock) return;
  if (item == RigItem::Mode) {
    ours_.fill(now + kAftermath);  // radios keep more than the filter with a mode
  } else {
    ours_[at(order.reads)] = now + kAftermath;
  }
  if (item == RigItem::Frequency) tuned_ = order.wanted;
  if (newerWaits) {
    awaited_[at(item)].reset();
  } else if (can_->readable.has(order.reads)) {
    await(order, false, now);
  } else if (order.reads == RigItem::Mode) {
    takeMode({order.wantedMode, order.wanted}, now);
    report(item, Cause::Request, order.request.ticket);
  } else {
    takeNumber(order.reads, order.wanted, now);
    report(item, Cause::Request, order.request.ticket);
  }
}

void RigctldReadings::refused(const RigOrder& order, Instant now) {
  if (can_->readable.has(order.reads) && order.request.item != RigItem::Clock) {
    await(order, true, now);
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

void RigctldReadings::await(const RigOrder& order, bool refused, Instant now) {
  auto& slot = awaited_[at(order.request.item)];
  const auto older = slot ? slot->order.request.ticket : 0;
  const auto before = order.reads == RigItem::Mode ? value(RigItem::Filter) : value(order.reads);
  slot = Awaited{order, before, mode_, now + kPatience, now, refused};
  // Retuning on its own account must not swallow the answer to the operator's request.
  if (order.request.ticket == 0) slot->order.request.ticket = older;
}

void RigctldReadings::takeNumber(RigItem item, std::int32_t number, Instant now) {
  const bool first = !known(item);
  const bool news = first || number != value(item);
  const auto cause = first ? Cause::Learned : causeOf(item, number, now);
  value(item) = number;
  known_.add(item);
  if (item == RigItem::Pitch || item == RigItem::Shift) {
    if (!settle(RigItem::Bfo, now)) reportBfo(cause);
    return;
  }
  if (!settle(item, now) && news) report(item, cause);
  if (item == RigItem::Strength || item == RigItem::SquelchLevel) deriveSquelch(cause);
}

void RigctldReadings::takeMode(const ModeAndWidth& read, Instant now) {
  const bool first = !known(RigItem::Mode);
  const bool modeNews = first || read.mode != mode_;
  const bool stale = isStaleWidth(read.width, now);
  const bool widthNews = !stale && read.width > 0 && read.width != value(RigItem::Filter);
  const auto cause = first ? Cause::Learned : causeOf(RigItem::Mode, 0, now);
  const auto shown = number(RigItem::Frequency);
  mode_ = read.mode;
  width_ = read.width;
  if (!stale && (modeNews || widthNews)) value(RigItem::Filter) = read.width;
  known_.add(RigItem::Mode);
  if (stale && modeNews) expectWidth(now);
  const bool modeAsked = settle(RigItem::Mode, now);
  const bool filterAsked = settle(RigItem::Filter, now);
  if (modeNews && !modeAsked) report(RigItem::Mode, cause);
  if (!modeNews && widthNews && !modeAsked && !filterAsked) report(RigItem::Filter, cause);
  if (modeNews) modeChanged(cause, shown);
}

/// Servers were seen to answer the new mode with the old width for half a second.
bool RigctldReadings::isStaleWidth(std::int32_t width, Instant now) const {
  const auto stale = [&](RigItem requested) {
    const auto& awaited = awaited_[at(requested)];
    return awaited && !awaited->refused && now < awaited->until && awaited->order.wanted > 0 &&
           width == awaited->before && width != awaited->order.wanted;
  };
  return stale(RigItem::Mode) || stale(RigItem::Filter);
}

/// The mode is the new one: its filter is taken to be as it was asked for, until it is read.
void RigctldReadings::expectWidth(Instant now) {
  const auto& mode = awaited_[at(RigItem::Mode)];
  auto& filter = awaited_[at(RigItem::Filter)];
  if (mode && !filter) {
    filter = mode;
    filter->order.request = {RigItem::Filter, mode->order.wanted, {}, 0};
    filter->askAt = now + kBetweenReadBacks;
  }
  if (filter) value(RigItem::Filter) = filter->order.wanted;
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

/// Whether what has been read is what has come of the order, and not yet the value from before.
bool RigctldReadings::settled(const Awaited& awaited, Instant now) const {
  if (awaited.refused || now >= awaited.until) return true;
  const auto& order = awaited.order;
  if (order.reads != RigItem::Mode) {
    const auto read = values_[at(order.reads)];
    return read == order.wanted || read != awaited.before;
  }
  const bool widthDone = order.wanted == 0 || width_ == order.wanted || width_ != awaited.before;
  if (order.request.item == RigItem::Filter) return widthDone;
  return mode_ != awaited.modeBefore || (mode_ == order.wantedMode && widthDone);
}

/// Ends the wait for a request of this item where the reading shows what came of it. Answers
/// whether there was one: then a change of the value is its doing, and not reported besides.
bool RigctldReadings::settle(RigItem requested, Instant now) {
  auto& awaited = awaited_[at(requested)];
  if (!awaited) return false;
  if (settled(*awaited, now)) {
    report(requested, Cause::Request, awaited->order.request.ticket, awaited->refused);
    awaited.reset();
  }
  return true;
}

Cause RigctldReadings::causeOf(RigItem item, std::int32_t number, Instant now) const {
  if (now >= ours_[at(item)]) return Cause::AtReceiver;
  if (item != RigItem::Frequency) return Cause::Request;
  const bool close = near(number, tuned_) || near(number, values_[at(item)]);
  return close ? Cause::Request : Cause::AtReceiver;
}

void RigctldReadings::report(RigItem item, Cause cause, std::uint32_t ticket, bool refused) {
  const bool mode = item == RigItem::Mode;
  reports_.push_back({item, number(item), mode ? mode_ : std::string(), cause, ticket, refused});
  if (item == RigItem::Bfo) reportedBfo_ = number(item);
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
