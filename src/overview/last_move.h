#pragma once

#include <array>
#include <string>

#include "base/time.h"
#include "base/wall_time.h"
#include "receiver/receiver_set.h"

namespace kelvane {

/// Who tuned a receiver last. A link to a radio cannot tell its knob from another program.
struct Move {
  enum class By { Nobody, Operator, Forwarding, RadioOrProgram };

  By by = By::Nobody;
  Index follows = -1;  ///< the receiver that forwarded it
  Hz frequency = -1;
  Instant when{};
  WallTime utc = 0;
};

/// Remembers for each receiver who tuned it last. The component says whether a change came from the
/// receiver itself; of the others it knows the receiver that was followed by the frequency that
/// both have then.
class LastMoves {
 public:
  explicit LastMoves(ReceiverComponent& component) : component_(component) {}

  /// A receiver has a new frequency. `forwarding` is the mode as `SetRxForward` was told it.
  void moved(Index rx, Hz frequency, bool atReceiver, Long forwarding, Index shown, Instant now,
             WallTime utc);
  void receiversChanged(const ReceiverMoves& moves);
  const Move& of(Index rx) const { return last_[rx]; }

 private:
  Index followed(Index rx, Hz frequency, Long forwarding, Instant now) const;
  bool sameAs(Index follower, Hz frequency, Hz source) const;

  ReceiverComponent& component_;
  std::array<Move, kMostReceivers> last_;
};

/// "operator 22:26", "follows Harrow 22:26"; the times are UTC. Empty where nobody moved it.
std::string moveWords(const Move& move, const std::string& followed);

}  // namespace kelvane
