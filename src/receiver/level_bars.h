#pragma once

#include <array>

#include "receiver/receiver_set.h"
#include "receiver/shown_receiver.h"
#include "ui/control.h"
#include "ui/meter_bar.h"

namespace kelvane {

/// Each receiver's meter, for whatever shows one: the panel's bars change here, the shown
/// receiver's and one on each tab, at most twenty times a second however many readings come;
/// windows ask for theirs when they paint.
class LevelBars {
 public:
  static constexpr milliseconds kFrame{50};

  LevelBars(MeterBar& meter, TabRow& tabs, ReceiverComponent& component, ShownReceiver& shown)
      : meter_(meter), tabs_(tabs), component_(component), shown_(shown) {}

  /// A receiver that answers told its level, dBm.
  void reading(Index rx, Long dBm, Instant now);
  /// A receiver's bar as it is now, in S units; empty while it tells no level.
  MeterBar bar(Index rx, Instant now) const {
    return meters_[static_cast<std::size_t>(rx)].bar(false, now);
  }
  /// A receiver's link is up, or is not: its old readings count no more.
  void linkReported(Index rx);
  /// Before the tabs are those of the new set.
  void receiversChanged(const ReceiverMoves& moves);
  /// The shown receiver, its link or its squelch is another one, or may be: shows its bar at once.
  void receiverSelected();
  /// Nothing is shown of the receiver that was shown until now.
  void otherReceiver() { meter_ = {.decibels = decibels_}; }
  /// The scale is in dBm instead of S units.
  void countInDecibels(bool decibels);

  /// Asks for what no event tells for certain: a receiver's squelch threshold, those of all.
  void askThreshold(Index rx);
  void askThresholds();
  void tick(Instant now);
  Instant nextDue() const;

 private:
  LevelMeter& meterOf(Index rx) { return meters_[static_cast<std::size_t>(rx)]; }
  void show(Instant now);

  MeterBar& meter_;
  TabRow& tabs_;
  ReceiverComponent& component_;
  ShownReceiver& shown_;
  std::array<LevelMeter, kMostReceivers> meters_;
  bool decibels_ = false;
  bool stale_ = false;  ///< readings came that the bars do not show yet
  Instant now_{};       ///< of the last reading or tick
  Instant shownAt_{};
};

}  // namespace kelvane
