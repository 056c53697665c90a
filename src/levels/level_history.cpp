#include "levels/level_history.h"

#include <algorithm>
#include <cmath>
#include <iterator>

namespace kelvane {

void LevelSpan::add(float low, float middle, float high, int count) {
  const int all = readings + count;
  least = readings == 0 ? low : std::min(least, low);
  greatest = readings == 0 ? high : std::max(greatest, high);
  mean += (middle - mean) * static_cast<float>(count) / static_cast<float>(all);
  readings = all;
}

void LevelHistory::add(LevelTime when, Long level) {
  if (level < kLowest || level > kHighest) return;
  if (count_ > 0 && when - last_ > kLongestPause) gap_ = true;
  if (empty()) first_ = when;
  last_ = when;
  keep({static_cast<std::uint32_t>(when), static_cast<std::int16_t>(level), gap_});
  const auto tenths = static_cast<std::int16_t>(level * kTenths);
  Second& second = secondOf(when / 1000);
  if (running_ != when / 1000) {
    running_ = when / 1000;
    sum_ = 0;
    inRunning_ = 0;
    second = {static_cast<std::int16_t>(tenths | (gap_ ? 1 : 0)), tenths, tenths};
  }
  gap_ = false;
  sum_ += level;
  ++inRunning_;
  const int mark = second.least & 1;
  second.least = static_cast<std::int16_t>(std::min<int>(second.least & ~1, tenths) | mark);
  second.greatest = std::max(second.greatest, tenths);
  second.mean = static_cast<std::int16_t>(std::lround(sum_ / inRunning_ * kTenths));
  forget();
}

void LevelHistory::keep(const Kept& reading) {
  if (count_ == ring_.size() && ring_.size() < kMostReadings) {
    // The oldest comes first again, so that the new room is behind the newest.
    std::rotate(ring_.begin(), ring_.begin() + static_cast<std::ptrdiff_t>(oldest_), ring_.end());
    oldest_ = 0;
    ring_.resize(std::min(std::max<std::size_t>(ring_.size() * 2, 256), kMostReadings));
  }
  if (count_ == ring_.size()) {
    ring_[oldest_] = reading;
    oldest_ = (oldest_ + 1) % ring_.size();
    return;
  }
  ring_[(oldest_ + count_) % ring_.size()] = reading;
  ++count_;
}

void LevelHistory::forget() {
  while (count_ > 0 && last_ - momentOf(kept(0)) > kRecent) {
    oldest_ = (oldest_ + 1) % ring_.size();
    --count_;
  }
  // The last change before the kept time tells what was received at its beginning.
  while (tuned_.size() > 1 && tuned_[1].when <= last_ - kKept) tuned_.pop_front();
}

void LevelHistory::tuned(LevelTime when, Hz frequency) {
  if (!tuned_.empty() && tuned_.back().frequency == frequency) return;
  tuned_.push_back({when, frequency});
  if (tuned_.size() > kMostTuned) tuned_.pop_front();
}

const LevelHistory::Kept& LevelHistory::kept(std::size_t place) const {
  return ring_[(oldest_ + place) % ring_.size()];
}

/// The low bits are enough: no kept reading is older than ten minutes before the last one.
LevelTime LevelHistory::momentOf(const Kept& reading) const {
  return last_ - static_cast<std::uint32_t>(static_cast<std::uint32_t>(last_) - reading.when);
}

std::size_t LevelHistory::firstSince(LevelTime when) const {
  std::size_t low = 0, high = count_;
  while (low < high) {
    const std::size_t middle = (low + high) / 2;
    momentOf(kept(middle)) < when ? low = middle + 1 : high = middle;
  }
  return low;
}

LevelHistory::Second& LevelHistory::secondOf(LevelTime second) {
  const LevelTime number = second / kBlock;
  if (seconds_.empty() || seconds_.back().number < number) {
    seconds_.push_back({number, std::make_unique<Second[]>(kBlock)});
    while (seconds_.front().number + static_cast<LevelTime>(kMostBlocks) <= number)
      seconds_.pop_front();
  }
  return seconds_.back().seconds[second % kBlock];
}

LevelSpan LevelHistory::read(const Second& second) {
  LevelSpan span;
  if (second.least == kNothing) return span;
  const auto dBm = [](int tenths) { return static_cast<float>(tenths) / kTenths; };
  span.add(dBm(second.least & ~1), dBm(second.mean), dBm(second.greatest), 1);
  span.afterGap = (second.least & 1) != 0;
  return span;
}

LevelSpan LevelHistory::second(LevelTime second) const {
  const LevelTime number = second / kBlock;
  const auto block = std::ranges::lower_bound(seconds_, number, {}, &Block::number);
  if (second < 0 || block == seconds_.end() || block->number != number) return {};
  return read(block->seconds[second % kBlock]);
}

std::optional<LevelReading> LevelHistory::last() const {
  if (count_ == 0) return {};
  return LevelReading{last_, kept(count_ - 1).level};
}

LevelTime LevelHistory::recentSince() const { return count_ > 0 ? momentOf(kept(0)) : last_; }

void LevelHistory::fill(LevelTime from, LevelTime to, std::span<LevelSpan> columns) const {
  std::ranges::fill(columns, LevelSpan{});
  if (columns.empty() || to <= from || empty()) return;
  const LevelTime since = recentSince();
  // A view of the last ten minutes begins with readings that are about to go.
  const bool oneByOne = to - from <= kRecent && (from >= since - 1000 || since == first_);
  if (oneByOne)
    fillFromReadings(from, to, columns);
  else
    fillFromSeconds(from, to, columns);
}

void LevelHistory::fillFromReadings(LevelTime from, LevelTime to,
                                    std::span<LevelSpan> columns) const {
  const auto width = static_cast<LevelTime>(columns.size());
  for (std::size_t i = firstSince(from); i < count_; ++i) {
    const Kept& reading = kept(i);
    const LevelTime when = momentOf(reading);
    if (when >= to) break;
    LevelSpan& column = columns[static_cast<std::size_t>((when - from) * width / (to - from))];
    const auto level = static_cast<float>(reading.level);
    column.afterGap |= reading.afterGap != 0;
    column.add(level, level, level, 1);
  }
}

/// What seconds of one block come to; a day of them is looked at for each picture.
LevelSpan LevelHistory::sum(const Second* seconds, LevelTime count) {
  int least = INT16_MAX, greatest = INT16_MIN, sum = 0, readings = 0, gap = 0;
  for (const Second* second = seconds; second != seconds + count; ++second) {
    if (second->least == kNothing) continue;
    least = std::min<int>(least, second->least & ~1);
    greatest = std::max<int>(greatest, second->greatest);
    sum += second->mean;
    gap |= second->least & 1;
    ++readings;
  }
  LevelSpan span;
  if (readings == 0) return span;
  constexpr float kTenth = 1.0F / kTenths;
  span.add(static_cast<float>(least) * kTenth,
           static_cast<float>(sum) * kTenth / static_cast<float>(readings),
           static_cast<float>(greatest) * kTenth, readings);
  span.afterGap = gap != 0;
  return span;
}

/// A second stands at its middle: it belongs to the column in which that lies.
void LevelHistory::fillFromSeconds(LevelTime from, LevelTime to,
                                   std::span<LevelSpan> columns) const {
  const auto width = static_cast<LevelTime>(columns.size());
  const auto firstAfter = [](LevelTime moment) { return (moment + 499) / 1000; };
  auto block = seconds_.begin();
  LevelTime second = firstAfter(from);
  for (LevelTime x = 0; x < width; ++x) {
    const LevelTime end = firstAfter(from + (to - from) * (x + 1) / width);
    LevelSpan& column = columns[static_cast<std::size_t>(x)];
    while (second < end) {
      while (block != seconds_.end() && (block->number + 1) * kBlock <= second) ++block;
      if (block == seconds_.end()) return;
      second = std::max(second, block->number * kBlock);
      const LevelTime behind = std::min(end, (block->number + 1) * kBlock);
      if (second >= behind) break;
      const LevelSpan part = sum(&block->seconds[second % kBlock], behind - second);
      second = behind;
      if (part.readings == 0) continue;
      column.afterGap |= part.afterGap;
      column.add(part.least, part.mean, part.greatest, part.readings);
    }
    second = std::max(second, end);
  }
}

std::vector<LevelReading> LevelHistory::readings(LevelTime from, LevelTime to) const {
  std::vector<LevelReading> found;
  for (std::size_t i = firstSince(from); i < count_; ++i) {
    const LevelTime when = momentOf(kept(i));
    if (when >= to) break;
    found.push_back({when, kept(i).level});
  }
  return found;
}

Hz LevelHistory::frequencyAt(LevelTime when) const {
  const auto after = std::ranges::upper_bound(tuned_, when, {}, &TunedAt::when);
  return after == tuned_.begin() ? -1 : std::prev(after)->frequency;
}

std::size_t LevelHistory::size() const {
  return ring_.capacity() * sizeof(Kept) + seconds_.size() * kBlock * sizeof(Second) +
         tuned_.size() * sizeof(TunedAt);
}

}  // namespace kelvane
