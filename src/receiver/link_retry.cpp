#include "receiver/link_retry.h"

#include <algorithm>
#include <cmath>

#include "contract/link_state.h"

namespace kelvane {

void LinkRetry::pace(Count receivers, Instant now) {
  TimUpd_.start(milliseconds(static_cast<int>(std::nearbyint(500.0 / receivers))), now);
}

void LinkRetry::start(Count receivers, Instant now) {
  if (receivers > 0) pace(receivers, now);
}

void LinkRetry::reported(Index rx, Long code, Instant now) {
  if (rx < 0 || rx >= kMostReceivers) return;
  failed_[rx] = code != static_cast<Long>(LinkState::Up) &&
                code != static_cast<Long>(LinkState::NotResponding);
  const auto failures = static_cast<Count>(std::count(failed_.begin(), failed_.end(), true));
  if (failures >= 1 && failures <= receiverCount(component_)) pace(failures, now);
}

void LinkRetry::receiversChanged(const ReceiverMoves& moves, Instant now) {
  moves.carry(failed_, false);
  start(receiverCount(component_), now);
}

bool LinkRetry::tick(Instant now) {
  if (!TimUpd_.fired(now)) return false;
  const Index turn = next_;
  next_ = static_cast<Index>((next_ + 1) & (kMostReceivers - 1));
  // Strictly greater: one slot a round belongs to no receiver.
  if (next_ > receiverCount(component_)) next_ = 0;
  if (!failed_[turn]) return false;
  failed_[turn] = false;
  component_.SetRxConnect(turn, true);
  return true;
}

}  // namespace kelvane
