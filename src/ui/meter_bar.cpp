#include "ui/meter_bar.h"

#include <algorithm>
#include <array>
#include <chrono>
#include <cmath>

namespace kelvane {

namespace {

constexpr double kS9Level = -73, kUnitOfS = 6, kS0Level = kS9Level - 9 * kUnitOfS, kOverS9 = 60;
constexpr Long kLowestLevel = -200, kHighestLevel = 100;
/// A receiver that floods its meter is averaged over less than three seconds.
constexpr std::size_t kMostReadings = 512;

constexpr auto kUnitScale = std::to_array<ScaleMark>({{"S1", 67},
                                                      {"3", 200},
                                                      {"5", 333},
                                                      {"7", 467},
                                                      {"9", 600},
                                                      {"+20", 733},
                                                      {"+40", 867},
                                                      {"+60", 1000}});
constexpr auto kDecibelScale = std::to_array<ScaleMark>({{"-120", 78},
                                                         {"-110", 189},
                                                         {"-100", 300},
                                                         {"-90", 411},
                                                         {"-80", 522},
                                                         {"-60", 687},
                                                         {"-40", 820},
                                                         {"-20 dBm", 953}});

double secondsBetween(Instant from, Instant to) {
  return std::chrono::duration<double>(to - from).count();
}

/// The level at a place, dBm.
double levelAt(int place) {
  const double span = place <= MeterBar::kS9 ? kS9Level - kS0Level : kOverS9;
  const int from = place <= MeterBar::kS9 ? 0 : MeterBar::kS9;
  const int length = place <= MeterBar::kS9 ? MeterBar::kS9 : MeterBar::kFull - MeterBar::kS9;
  return (from == 0 ? kS0Level : kS9Level) + span * (place - from) / length;
}

}  // namespace

int placeOnBar(double dBm) {
  const double place = dBm <= kS9Level ? (dBm - kS0Level) / (kS9Level - kS0Level) * MeterBar::kS9
                                       : MeterBar::kS9 + (dBm - kS9Level) / kOverS9 *
                                                             (MeterBar::kFull - MeterBar::kS9);
  return static_cast<int>(std::lround(std::clamp<double>(place, 0, MeterBar::kFull)));
}

std::span<const ScaleMark> meterScale(bool decibels) {
  if (decibels) return kDecibelScale;
  return kUnitScale;
}

std::string sUnitsOf(double dBm) {
  const auto whole = std::lround(dBm);
  if (whole > std::lround(kS9Level)) return "S9+" + std::to_string(whole - std::lround(kS9Level));
  const double above = std::max(static_cast<double>(whole) - kS0Level, 0.0);
  return "S" + std::to_string(static_cast<int>(above / kUnitOfS));
}

std::string spokenBar(const MeterBar& bar) {
  const auto words = [&bar](int place) {
    const double level = levelAt(place);
    return bar.decibels ? std::to_string(std::lround(level)) + " dBm" : sUnitsOf(level);
  };
  if (!bar.live) return "Signal level: none";
  std::string text = "Signal level: " + words(bar.level);
  if (bar.peak > bar.level) text += ", peak " + words(bar.peak);
  if (bar.squelch >= 0) text += ", squelch opens at " + words(bar.squelch);
  return text;
}

void LevelMeter::reading(Long dBm, Instant now) {
  const Long level = std::clamp(dBm, kLowestLevel, kHighestLevel);
  if (!live() || level >= peak(now)) {
    peak_ = level;
    peakAt_ = now;
  }
  level_ = level;
  forget(now);
  readings_.push_back({now, level});
  sum_ += level;
}

void LevelMeter::forget(Instant now) {
  while (!readings_.empty() &&
         (readings_.front().at + kMeanOver <= now || readings_.size() >= kMostReadings)) {
    sum_ -= readings_.front().dBm;
    readings_.pop_front();
  }
}

void LevelMeter::clear() {
  level_.reset();
  squelch_.reset();
  readings_.clear();
  sum_ = 0;
}

double LevelMeter::peak(Instant now) const {
  const double falling = std::max(secondsBetween(peakAt_ + kPeakHeld, now), 0.0);
  return std::max(peak_ - falling * kPeakFalls, static_cast<double>(level_.value_or(kLowestLevel)));
}

MeterBar LevelMeter::bar(bool decibels, Instant now) const {
  MeterBar bar{.live = live(), .decibels = decibels};
  if (!bar.live) return bar;
  bar.level = placeOnBar(*level_);
  bar.peak = placeOnBar(peak(now));
  const auto count = static_cast<double>(readings_.size());
  bar.mean = placeOnBar(count > 0 ? static_cast<double>(sum_) / count : *level_);
  if (squelch_) bar.squelch = placeOnBar(*squelch_);
  return bar;
}

}  // namespace kelvane
