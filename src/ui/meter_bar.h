#pragma once

#include <deque>
#include <optional>
#include <span>
#include <string>
#include <string_view>

#include "base/time.h"
#include "contract/types.h"

namespace kelvane {

/// What a meter's bar shows, as plain values. A place on it is counted in thousandths of its
/// length: S0 lies at 0, S9 at 600, S9+60 at 1000.
struct MeterBar {
  static constexpr int kNone = -1;
  static constexpr int kS9 = 600;
  static constexpr int kFull = 1000;

  bool live = false;      ///< there are readings; else it is empty
  bool decibels = false;  ///< the scale is in dBm instead of S units
  int level = kNone;      ///< place of the newest reading
  int peak = kNone;       ///< place of the highest of the last moments, held and falling
  int mean = kNone;       ///< place of the mean of the last seconds
  int squelch = kNone;    ///< place of the threshold, where the receiver tells it

  bool operator==(const MeterBar&) const = default;
};

/// The place of a level; one beyond either end lies at that end.
int placeOnBar(double dBm);

/// A word on the scale and its place.
struct ScaleMark {
  std::string_view text;
  int place;
};
/// The scale in S units and the dB above S9, or in dBm.
std::span<const ScaleMark> meterScale(bool decibels);

/// "S7", "S9+20", for a level in dBm.
std::string sUnitsOf(double dBm);

/// What a screen reader says of a bar: "Signal level: S7, peak S9+10, squelch opens at S3".
std::string spokenBar(const MeterBar& bar);

/// Turns one receiver's readings into what its bar shows. Fed readings and time; asked as often as
/// somebody paints.
class LevelMeter {
 public:
  static constexpr milliseconds kPeakHeld{1500};
  static constexpr milliseconds kMeanOver{3000};
  static constexpr double kPeakFalls = 20;  ///< dB a second, after it was held

  /// A reading in dBm. One that is far out of any scale counts as the nearest that is not.
  void reading(Long dBm, Instant now);
  /// The squelch threshold in dBm; none where it is not known, which says nothing of the squelch.
  void setSquelch(std::optional<Long> dBm) { squelch_ = dBm; }
  /// The receiver does not tell its level any more.
  void clear();

  bool live() const { return level_.has_value(); }
  MeterBar bar(bool decibels, Instant now) const;
  /// The held peak, dBm; only while there are readings.
  double peak(Instant now) const;
  /// Whether the bar moves without a reading: its peak has still to fall.
  bool moves(Instant now) const { return live() && peak(now) > *level_; }

 private:
  struct Reading {
    Instant at;
    Long dBm;
  };
  void forget(Instant now);

  std::optional<Long> level_;
  std::optional<Long> squelch_;
  double peak_ = 0;  ///< dBm, at the moment peakAt_
  Instant peakAt_{};
  std::deque<Reading> readings_;  ///< of the last kMeanOver
  long long sum_ = 0;             ///< of the readings that are kept
};

}  // namespace kelvane
