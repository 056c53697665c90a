#include "components/sondrel/rigctld_health.h"

#include "components/sondrel/rigctld_handshake.h"

namespace kelvane::sondrel {

namespace {

constexpr int kMostTroubles = 3;
constexpr int kRejected = 9;

/// The link's state after a reply without a value; none where the radio did answer.
std::optional<LinkState> troubleIn(const Reply& reply) {
  if (!reply.ok()) return stateOfError(*reply.report);
  if (reply.lines.empty()) return LinkState::NotResponding;  // a radio that is switched off
  return std::nullopt;
}

}  // namespace

std::optional<RigItem> RigctldHealth::heartbeat(const RigctldCapabilities& can) const {
  for (const auto item : {RigItem::Frequency, RigItem::Mode, RigItem::Strength}) {
    if (can.readable.has(item) && !unreadable_.has(item)) return item;
  }
  return std::nullopt;
}

RigItems RigctldHealth::polled(const RigctldCapabilities& can) const {
  RigItems items;
  for (int i = 0; i < kRigItems; ++i) {
    const auto item = static_cast<RigItem>(i);
    const bool asked = can.readable.has(item) && item != RigItem::Clock;
    if (asked && !unreadable_.has(item) && !suspended_.has(item)) items.add(item);
  }
  return items;
}

RigctldHealth::Finding RigctldHealth::judge(RigItem item, const Reply& reply, bool good, bool up,
                                            const RigctldCapabilities& can) {
  const auto trouble = good ? std::nullopt : troubleIn(reply);
  if (trouble == LinkState::Configuration) return {trouble, false, true};
  if (item == heartbeat(can)) return judgeHeartbeat(reply, good, up);
  judgeSetting(item, reply, good);
  return {std::nullopt, trouble.has_value(), false};
}

RigctldHealth::Finding RigctldHealth::judgeHeartbeat(const Reply& reply, bool good, bool up) {
  heartbeatTroubles_ = good ? 0 : heartbeatTroubles_ + 1;
  if (good) return {LinkState::Up, false, false};
  const auto trouble = troubleIn(reply);
  if (trouble) {
    // Once is a disturbance, twice is a fault.
    const bool again = *trouble == LinkState::Error && up && heartbeatTroubles_ == 1;
    return again ? Finding{std::nullopt, true, false} : Finding{trouble, false, false};
  }
  // A frequency that is too high for the contract is a value still, and a refusal an answer.
  const bool sense = !reply.ok() || numberOf(valueOf(reply.lines[0]));
  if (!sense && heartbeatTroubles_ >= kMostTroubles) return {LinkState::Error, false, true};
  return {LinkState::Up, false, false};
}

void RigctldHealth::judgeSetting(RigItem item, const Reply& reply, bool good) {
  auto& troubles = troubles_[at(item)];
  troubles = good ? 0 : troubles + 1;
  if (good) return;
  if (reply.report == kRejected) {
    suspended_.add(item);
  } else if (troubles >= kMostTroubles || (!reply.ok() && !stateOfError(*reply.report))) {
    unreadable_.add(item);
  }
}

}  // namespace kelvane::sondrel
