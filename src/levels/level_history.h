#pragma once

#include <cstdint>
#include <deque>
#include <memory>
#include <optional>
#include <span>
#include <vector>

#include "contract/types.h"
#include "levels/level_clock.h"

namespace kelvane {

/// What the readings of a span of time come to, dBm; nothing where there is none.
struct LevelSpan {
  float least = 0, mean = 0, greatest = 0;
  int readings = 0;
  bool afterGap = false;  ///< what came before does not belong to it: no line leads here

  void add(float least, float mean, float greatest, int readings);
};

/// A change of frequency.
struct TunedAt {
  LevelTime when;
  Hz frequency;
};

/// A reading, as it was told.
struct LevelReading {
  LevelTime when;
  Long level;  ///< dBm
};

/// What a receiver's meter said: each reading of the last ten minutes, and of the last 24 hours
/// least, mean and greatest of each second. Never grows beyond its bounds: with more than 50
/// readings a second the oldest of them go sooner. Moments that are handed in never go back.
class LevelHistory {
 public:
  static constexpr LevelTime kRecent = 600'000;
  static constexpr LevelTime kKept = 24LL * 3'600'000;
  static constexpr std::size_t kMostReadings = 30'000;
  static constexpr std::size_t kMostTuned = 10'000;
  /// Readings that are further apart than this are not joined by a line, ms.
  static constexpr LevelTime kLongestPause = 10'000;
  /// Levels that a meter may tell, dBm; anything else is no reading.
  static constexpr Long kLowest = -250, kHighest = 150;
  /// Bytes that a whole history takes: what has to be there for each reading and second.
  static constexpr std::size_t kComputedSize = kMostReadings * 8 + kKept / 1000 * 6;

  void add(LevelTime when, Long level);
  /// What comes next does not belong to what came before.
  void gap() { gap_ = true; }
  void tuned(LevelTime when, Hz frequency);

  bool empty() const { return seconds_.empty(); }
  /// The last reading; none before the first.
  std::optional<LevelReading> last() const;
  /// The spans of equal length from `from` to `to`, as many as `columns` has places. Readings are
  /// looked at one by one where all of the time is recent, else second by second.
  void fill(LevelTime from, LevelTime to, std::span<LevelSpan> columns) const;
  /// What second number `second` of the levels' time (moment / 1000) came to.
  LevelSpan second(LevelTime second) const;
  /// The readings of a span of time, as far as they are kept one by one.
  std::vector<LevelReading> readings(LevelTime from, LevelTime to) const;
  /// From when on readings are kept one by one.
  LevelTime recentSince() const;
  const std::deque<TunedAt>& tuned() const { return tuned_; }
  /// The frequency at a moment; -1 where it is not known.
  Hz frequencyAt(LevelTime when) const;
  /// Bytes that are in use.
  std::size_t size() const;

 private:
  static constexpr LevelTime kBlock = 3600;
  static constexpr std::size_t kMostBlocks = kKept / 1000 / kBlock + 1;
  static constexpr std::int16_t kNothing = INT16_MIN;
  static constexpr std::int16_t kTenths = 10;

  struct Kept {
    std::uint32_t when;  ///< the low bits of its moment
    std::int16_t level;
    std::int16_t afterGap;
  };
  /// In tenths of a dB; an odd `least` would be no whole level, and marks a gap before it.
  struct Second {
    std::int16_t least = kNothing, mean = 0, greatest = 0;
  };
  struct Block {
    LevelTime number;  ///< of the block's hour
    std::unique_ptr<Second[]> seconds;
  };

  const Kept& kept(std::size_t place) const;
  LevelTime momentOf(const Kept& reading) const;
  std::size_t firstSince(LevelTime when) const;
  void keep(const Kept& reading);
  void forget();
  Second& secondOf(LevelTime second);
  static LevelSpan read(const Second& second);
  static LevelSpan sum(const Second* seconds, LevelTime count);
  void fillFromReadings(LevelTime from, LevelTime to, std::span<LevelSpan> columns) const;
  void fillFromSeconds(LevelTime from, LevelTime to, std::span<LevelSpan> columns) const;

  std::vector<Kept> ring_;
  std::size_t oldest_ = 0, count_ = 0;
  std::deque<Block> seconds_;
  std::deque<TunedAt> tuned_;
  LevelTime first_ = 0, last_ = 0;  ///< moments of the first reading and of the last one
  LevelTime running_ = -1;          ///< the second that is being filled
  double sum_ = 0;                  ///< of its readings
  int inRunning_ = 0;
  bool gap_ = true;
};

}  // namespace kelvane
