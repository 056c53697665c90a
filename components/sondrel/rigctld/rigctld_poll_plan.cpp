#include "components/sondrel/rigctld/rigctld_poll_plan.h"

#include <algorithm>
#include <chrono>

namespace kelvane::sondrel {

namespace {

using std::chrono::duration;

struct Interval {
  RigItem item;
  milliseconds shown;
  milliseconds other;
};

// Where a row is missing the item is never polled. The meter of the receiver that is looked at
// moves like a needle; the rest is what a hand at the radio or another program may change. Where a
// command takes 20 ms, as with most servers, all of it together leaves the meter 20 readings a
// second.
constexpr Interval kIntervals[] = {
    {RigItem::Strength, milliseconds(40), milliseconds(160)},
    {RigItem::Frequency, milliseconds(200), milliseconds(250)},
    {RigItem::Mode, milliseconds(700), milliseconds(700)},
    {RigItem::Squelch, milliseconds(500), milliseconds(700)},
    {RigItem::SquelchLevel, milliseconds(2000), milliseconds(3000)},
    {RigItem::Attenuator, milliseconds(4000), milliseconds(5000)},
    {RigItem::Agc, milliseconds(4000), milliseconds(5000)},
    {RigItem::Blanker, milliseconds(4000), milliseconds(5000)},
    {RigItem::Preamp, milliseconds(4000), milliseconds(5000)},
    {RigItem::Pitch, milliseconds(4000), milliseconds(5000)},
    {RigItem::Shift, milliseconds(4000), milliseconds(5000)},
    {RigItem::Step, milliseconds(4000), milliseconds(5000)},
};

// One reply that took seconds says that something went wrong, not that the line is that slow.
constexpr milliseconds kLongestRest{1000};

}  // namespace

void PollPlan::start(RigItems items, Instant now) {
  for (const auto& row : kIntervals) {
    if (items.has(row.item) && !items_.has(row.item)) due_[at(row.item)] = now;
  }
  items_ = items;
}

std::optional<RigItem> PollPlan::take(Instant now) {
  std::optional<RigItem> chosen;
  double latest = -1;
  for (const auto& row : kIntervals) {
    if (!items_.has(row.item)) continue;
    if (readNext_.has(row.item)) {
      readNext_.remove(row.item);
      due_[at(row.item)] = now + interval(row.item);
      return row.item;
    }
    if (now < restUntil_ || dueAt(row.item) > now) continue;
    const double late = duration<double>(now - due_[at(row.item)]) / interval(row.item);
    if (late <= latest) continue;
    latest = late;
    chosen = row.item;
  }
  if (!chosen) return std::nullopt;
  auto& due = due_[at(*chosen)];
  due = std::max(due + interval(*chosen), now);
  return chosen;
}

void PollPlan::answered(Instant sent, Instant now) {
  const double share = std::clamp(rates_.share, 0.01, 1.0);
  const auto rest = duration<double>(now - sent) * ((1 - share) / share);
  const auto capped = std::min<duration<double>>(rest, kLongestRest);
  restUntil_ = now + std::chrono::duration_cast<Instant::duration>(capped);
}

void PollPlan::readNext(RigItem item) { readNext_.add(item); }

Instant PollPlan::nextDue() const {
  Instant next = kNever;
  for (const auto& row : kIntervals) {
    if (!items_.has(row.item)) continue;
    if (readNext_.has(row.item)) return Instant{};
    next = std::min(next, std::max(dueAt(row.item), restUntil_));
  }
  return next;
}

Instant PollPlan::dueAt(RigItem item) const {
  const auto due = due_[at(item)];
  return isSetting(item) ? std::max(due, settingsFrom_) : due;
}

milliseconds PollPlan::interval(RigItem item) const {
  const auto row = std::find_if(std::begin(kIntervals), std::end(kIntervals),
                                [item](const Interval& each) { return each.item == item; });
  const auto usual = shown_ ? row->shown : row->other;
  const auto paced = usual / std::clamp(rates_.pace, 0.01, 1000.0);
  return std::max(milliseconds(1), std::chrono::duration_cast<milliseconds>(paced));
}

}  // namespace kelvane::sondrel
