#include "receiver/level_bars.h"

#include <algorithm>
#include <optional>

namespace kelvane {

namespace {

/// A tab's bar is short: finer steps than these cannot be seen, and would paint it more often.
constexpr int kTabStep = 20;

bool isReceiver(Index rx) { return rx >= 0 && rx < kMostReceivers; }

int tabLevel(const LevelMeter& meter, Instant now) {
  const MeterBar bar = meter.bar(false, now);
  return bar.live ? (bar.level + kTabStep / 2) / kTabStep * kTabStep : MeterBar::kNone;
}

}  // namespace

void LevelBars::reading(Index rx, Long dBm, Instant now) {
  if (!isReceiver(rx)) return;
  meterOf(rx).reading(dBm, now);
  stale_ = true;
  tick(now);
}

void LevelBars::linkReported(Index rx) {
  if (!isReceiver(rx)) return;
  if (component_.IsRxOnline(rx)) return askThreshold(rx);
  meterOf(rx).clear();
  show(now_);
}

void LevelBars::receiversChanged(const ReceiverMoves& moves) {
  moves.carry(meters_, LevelMeter());
  stale_ = true;
}

void LevelBars::receiverSelected() {
  if (shown_.exists()) askThreshold(shown_.index());
  show(now_);
}

void LevelBars::askThreshold(Index rx) {
  if (!isReceiver(rx) || !component_.IsRxOnline(rx)) return;
  constexpr Long kNotTold = -999;
  const Answer<Long> level = component_.GetRxSqlLevel(rx);
  const bool told = level.ok() && level != kNotTold;
  meterOf(rx).setSquelch(told ? std::optional(level.value()) : std::nullopt);
}

void LevelBars::askThresholds() {
  const Count receivers = receiverCount(component_);
  for (Index rx = 0; rx < receivers; ++rx) askThreshold(rx);
}

void LevelBars::countInDecibels(bool decibels) {
  decibels_ = decibels;
  show(now_);
}

void LevelBars::tick(Instant now) {
  now_ = std::max(now_, now);
  if (nextDue() <= now) show(now_);
}

Instant LevelBars::nextDue() const {
  const bool falls =
      shown_.exists() && meters_[static_cast<std::size_t>(shown_.index())].moves(now_);
  return stale_ || falls ? shownAt_ + kFrame : kNever;
}

void LevelBars::show(Instant now) {
  stale_ = false;
  shownAt_ = now;
  meter_ = shown_.online() ? meterOf(shown_.index()).bar(decibels_, now)
                           : MeterBar{.decibels = decibels_};
  for (std::size_t i = 0; i < tabs_.tabs.size() && i < meters_.size(); ++i)
    tabs_.tabs[i].level = tabLevel(meters_[i], now);
}

}  // namespace kelvane
