#include "overview/last_move.h"

#include <algorithm>
#include <cstdlib>

#include "base/number.h"

namespace kelvane {

namespace {

/// The answers of a slow link come so long after those of a quick one.
constexpr milliseconds kTogether{5000};

}  // namespace

/// A follower takes the nearest frequency that it can tune.
bool LastMoves::sameAs(Index follower, Hz frequency, Hz source) const {
  const Hz finest = std::max<Hz>(component_.GetRxMinStep(follower), 1);
  return source >= 0 && std::llabs(static_cast<long long>(frequency) - source) < finest;
}

Index LastMoves::followed(Index rx, Hz frequency, Long forwarding, Instant now) const {
  for (Index source = 0; source < kMostReceivers; ++source) {
    if (source == rx || (forwarding >= 0 && forwarding != source)) continue;
    const Move& move = last_[source];
    const bool caused = move.by == Move::By::Operator || move.by == Move::By::RadioOrProgram;
    if (caused && now - move.when <= kTogether && sameAs(rx, frequency, move.frequency))
      return source;
  }
  return -1;
}

void LastMoves::moved(Index rx, Hz frequency, bool atReceiver, Long forwarding, Index shown,
                      Instant now, WallTime utc) {
  Move move{Move::By::Operator, -1, frequency, now, utc};
  if (atReceiver) {
    move.by = Move::By::RadioOrProgram;
  } else if (forwarding != kForwardNone) {
    move.follows = followed(rx, frequency, forwarding, now);
    if (move.follows >= 0) move.by = Move::By::Forwarding;
  }
  last_[rx] = move;
  const bool source = forwarding == rx || (forwarding == kForwardAll && rx == shown);
  if (move.by == Move::By::Forwarding || !source) return;
  // Who follows on a quicker link has told its frequency before the one that is followed.
  for (Index other = 0; other < kMostReceivers; ++other) {
    Move& earlier = last_[other];
    if (other == rx || earlier.by != Move::By::Operator || now - earlier.when > kTogether) continue;
    if (!sameAs(other, earlier.frequency, frequency)) continue;
    earlier.by = Move::By::Forwarding;
    earlier.follows = rx;
  }
}

void LastMoves::receiversChanged(const ReceiverMoves& moves) {
  moves.carry(last_, Move{});
  for (Move& move : last_) {
    if (move.by != Move::By::Forwarding) continue;
    move.follows = moves(move.follows);
  }
}

std::string moveWords(const Move& move, const std::string& followed) {
  if (move.by == Move::By::Nobody) return {};
  const int minute = static_cast<int>(move.utc / 60'000 % (24 * 60));
  const std::string time = " " + twoDigits(minute / 60) + ":" + twoDigits(minute % 60);
  switch (move.by) {
    case Move::By::Forwarding:
      return (followed.empty() ? "forwarding" : "follows " + followed) + time;
    case Move::By::RadioOrProgram:
      return "radio or program" + time;
    default:
      return "operator" + time;
  }
}

}  // namespace kelvane
