#include "components/sondrel/rigctld/rigctld_health.h"

namespace kelvane::sondrel {

namespace {

constexpr int kMostUnreadable = 3;
constexpr int kWrongConfiguration = 2;
constexpr int kTimeout = 5;
constexpr int kSecurity = 19;
constexpr int kPoweredOff = 20;
/// A radio that was waited for so long is no radio that was disturbed for a moment.
constexpr milliseconds kMoment{1000};

}  // namespace

std::optional<LinkState> stateOfError(int report) {
  switch (report) {
    case kTimeout:
    case kPoweredOff:
      return LinkState::NotResponding;
    case kWrongConfiguration:
    case kSecurity:
      return LinkState::Configuration;
    case 6:   // input or output
    case 7:   // inside the server
    case 8:   // the radio's own protocol
    case 13:  // bus
    case 14:
      return LinkState::Error;
    default:
      return std::nullopt;
  }
}

bool isUnsupported(int report) {
  return report == 1 || report == 4 || report == 11 || report == 18;
}

std::optional<LinkState> troubleIn(const Reply& reply) {
  if (!reply.ok()) return stateOfError(*reply.report);
  if (reply.lines.empty()) return LinkState::NotResponding;  // a radio that is switched off
  return std::nullopt;
}

std::optional<RigItem> heartbeatOf(const RigctldExperience& experience) {
  for (const auto item : {RigItem::Frequency, RigItem::Mode, RigItem::Strength}) {
    if (experience.tells(item)) return item;
  }
  return std::nullopt;
}

RigctldHealth::Finding RigctldHealth::judge(const Reply& reply, bool good, bool up,
                                            milliseconds took) {
  failuresInARow_ = good ? 0 : failuresInARow_ + 1;
  if (good) return {LinkState::Up, false, false};
  if (const auto trouble = troubleIn(reply)) {
    if (trouble == LinkState::Configuration) return {trouble, false, true};
    // Once is a disturbance, twice is a fault; a radio that is switched off says so itself.
    const bool momentary = !reply.ok() && *reply.report != kPoweredOff && took < kMoment;
    const bool again = momentary && up && failuresInARow_ == 1;
    return again ? Finding{std::nullopt, true, false} : Finding{trouble, false, false};
  }
  // A frequency that is too high for the contract is a value still, and a refusal an answer.
  const bool understood = !reply.ok() || numberOf(valueOf(reply.lines[0]));
  if (!understood && failuresInARow_ >= kMostUnreadable) return {LinkState::Error, false, true};
  return {LinkState::Up, false, false};
}

}  // namespace kelvane::sondrel
