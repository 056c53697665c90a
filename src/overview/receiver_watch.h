#pragma once

#include <array>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "levels/comparison.h"
#include "levels/level_history.h"
#include "levels/level_listener.h"
#include "overview/last_move.h"
#include "receiver/level_bars.h"
#include "receiver/shown_receiver.h"

namespace kelvane {

class Forwarding;

/// The computer's two clocks.
struct Clocks {
  std::function<Instant()> now;
  std::function<WallTime()> wall;
};

/// What the events of all receivers told, the shown one or not: levels with their history, squelch,
/// settings and who tuned last. Fed by the panel's event handlers; the meters are the panel's own.
/// What is kept belongs to the receiver, not to its place.
class ReceiverWatch {
 public:
  ReceiverWatch(ReceiverComponent& component, const ShownReceiver& shown, const LevelBars& levels,
                const Forwarding& forwarding, Clocks clocks);

  void level(Index rx, Long level, const Text& reading);
  void squelch(Index rx, Long state);
  void frequency(Index rx, Hz frequency, bool atReceiver);
  /// A mode, filter, AGC or attenuator has changed.
  void settings(Index rx);
  void link(Index rx);
  void receiversChanged(const ReceiverMoves& moves);
  void setListener(LevelListener* listener) { listener_ = listener; }

  struct Receiver {
    std::shared_ptr<LevelHistory> history = std::make_shared<LevelHistory>();
    Text reading;       ///< in S units; empty while there is none
    Long squelch = -1;  ///< 1 open, 0 closed, -1 not told
    Hz told = -1;       ///< the frequency that an event told last
    LevelSettings settings;
    LevelTime unchanged = 0;  ///< since when the settings are these
  };
  const Receiver& of(Index rx) const { return receivers_[rx]; }
  MeterBar bar(Index rx) const { return levels_.bar(rx, clocks_.now()); }
  const Move& lastMove(Index rx) const { return moves_.of(rx); }
  /// The present moment of the levels' time; asks the clocks.
  LevelTime now();
  const LevelClock& clock() const { return clock_; }
  /// Changes with every change of the set of receivers: what was told by place is to be asked anew.
  unsigned generation() const { return generation_; }

 private:
  void readSettings(Index rx);
  static bool valid(Index rx) { return rx >= 0 && rx < kMostReceivers; }

  ReceiverComponent& component_;
  const ShownReceiver& shown_;
  const LevelBars& levels_;
  const Forwarding& forwarding_;
  Clocks clocks_;
  LevelClock clock_;
  LastMoves moves_;
  std::array<Receiver, kMostReceivers> receivers_;
  LevelListener* listener_ = nullptr;
  unsigned generation_ = 0;
};

}  // namespace kelvane
