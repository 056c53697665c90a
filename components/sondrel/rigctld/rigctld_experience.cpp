#include "components/sondrel/rigctld/rigctld_experience.h"

#include <algorithm>
#include <chrono>
#include <utility>

#include "components/sondrel/rigctld/rigctld_health.h"

namespace kelvane::sondrel {

namespace {

using std::chrono::minutes;

constexpr int kMostTroublesInARow = 3;
constexpr int kRejected = 9;
/// A refusal that took so long is one that the radio was waited for in vain.
constexpr milliseconds kSlow{1000};
constexpr milliseconds kFirstRetry{1000};
constexpr milliseconds kLongestRetry = minutes(10);
constexpr milliseconds kFirstSlowRetry = minutes(10);
constexpr milliseconds kLongestSlowRetry = minutes(60);

// The most important first; a radio can take long to refuse the last two, which are read for their
// own sake and not to be set.
constexpr RigItem kOrder[] = {
    RigItem::Frequency,  RigItem::Mode,    RigItem::Strength, RigItem::SquelchLevel, RigItem::Agc,
    RigItem::Attenuator, RigItem::Blanker, RigItem::Preamp,   RigItem::Pitch,        RigItem::Shift,
    RigItem::Clock,      RigItem::Step,    RigItem::Squelch};

std::string nameOf(const RigctldCapabilities& found) {
  return std::to_string(static_cast<int>(found.dialect)) + " " + std::to_string(found.modelNumber) +
         " " + found.version;
}

bool canBeSet(RigItem item) {
  return item == RigItem::Agc || item == RigItem::Attenuator || item == RigItem::Blanker ||
         item == RigItem::Preamp || item == RigItem::Pitch || item == RigItem::Shift ||
         item == RigItem::Clock;
}

}  // namespace

void RigctldExperience::serverFound(const RigctldCapabilities& found, Instant now) {
  lastRefusal_.reset();
  if (const auto server = nameOf(found); server != server_) {
    known_ = {};
    server_ = server;
  }
  list(found);
  for (auto& known : known_) {
    known.fresh = false;
    known.troubles = 0;
    if (known.tells || known.slow) continue;
    known.tryAt = now;
    known.pause = milliseconds(0);
  }
}

void RigctldExperience::list(const RigctldCapabilities& found) {
  plain_ = found.dialect != Dialect::Extended;
  const bool settings = !plain_;
  for (const auto item : kOrder) {
    bool asked = item == RigItem::Frequency || item == RigItem::Mode;
    if (item == RigItem::Strength) asked = found.dialect != Dialect::Minimal;
    if (item == RigItem::SquelchLevel) asked = found.dialect == Dialect::Static;
    if (item == RigItem::Step || item == RigItem::Squelch) asked = settings;
    if (canBeSet(item)) asked = settings && found.settable.has(item);
    known_[at(item)].asked = asked;
  }
}

std::optional<RigItem> RigctldExperience::due(Instant now, bool anew) const {
  for (const auto item : kOrder) {
    const auto& known = known_[at(item)];
    if (!known.asked) continue;
    // A plain server without a meter has no other level either.
    if (plain_ && item == RigItem::SquelchLevel && !tells(RigItem::Strength)) continue;
    if (known.tells ? anew && !known.fresh : now >= known.tryAt) return item;
  }
  return std::nullopt;
}

Instant RigctldExperience::nextDue() const {
  Instant next = kNever;
  for (const auto item : kOrder) {
    const auto& known = known_[at(item)];
    if (plain_ && item == RigItem::SquelchLevel && !tells(RigItem::Strength)) continue;
    if (known.asked && !known.tells) next = std::min(next, known.tryAt);
  }
  return next;
}

RigItems RigctldExperience::told() const {
  RigItems items;
  for (const auto item : kOrder) {
    if (known_[at(item)].asked && tells(item)) items.add(item);
  }
  return items;
}

void RigctldExperience::answered(RigItem item, const Reply& reply, bool good, milliseconds took,
                                 Instant now) {
  auto& known = known_[at(item)];
  const Known before = known;
  known.fresh = true;
  if (good) {
    known.tells = true;
    known.thisModeOnly = known.slow = false;
    known.troubles = 0;
    known.pause = milliseconds(0);
    return;
  }
  const bool trouble = troubleIn(reply).has_value();
  if (trouble) lastRefusal_ = {item, before};
  const bool passing =
      known.tells && trouble && took < kSlow && ++known.troubles < kMostTroublesInARow;
  if (passing) return;
  known.thisModeOnly = reply.report == kRejected;
  refused(known, took, now);
}

void RigctldExperience::unanswered(RigItem item, milliseconds took, Instant now) {
  lastRefusal_.reset();
  known_[at(item)].fresh = true;
  refused(known_[at(item)], std::max(took, kSlow), now);
}

void RigctldExperience::refused(Known& known, milliseconds took, Instant now) {
  known.tells = false;
  known.slow = took >= kSlow;
  if (known.slow) {
    known.pause = std::clamp(known.pause * 2, kFirstSlowRetry, kLongestSlowRetry);
  } else {
    known.pause = std::clamp(known.pause * 4, kFirstRetry, kLongestRetry);
  }
  known.tryAt = now + known.pause;
}

void RigctldExperience::radioIsSilent() {
  if (!lastRefusal_) return;
  known_[at(lastRefusal_->item)] = lastRefusal_->before;
  lastRefusal_.reset();
}

void RigctldExperience::modeChanged(Instant now) {
  for (auto& known : known_) {
    if (std::exchange(known.thisModeOnly, false)) known.tryAt = now;
  }
}

}  // namespace kelvane::sondrel
