#include "components/ambrel/station_table.h"

#include <algorithm>
#include <iterator>
#include <limits>
#include <utility>

namespace kelvane::ambrel {

namespace {

bool lower(const Record& a, const Record& b) { return a.frequency < b.frequency; }

/// Orders by frequency and else keeps the order. Lists come nearly in order: what is out of it is
/// taken aside, ordered and merged back, so that an ordered list costs one pass.
void order(std::vector<Record>& records) {
  std::vector<Record> aside;
  Hz highest = std::numeric_limits<Hz>::min();
  auto kept = records.begin();
  for (const Record& record : records) {
    if (record.frequency < highest) {
      aside.push_back(record);
    } else {
      highest = record.frequency;
      *kept++ = record;
    }
  }
  if (aside.empty()) return;
  std::stable_sort(aside.begin(), aside.end(), lower);
  const auto middle =
      std::copy(aside.begin(), aside.end(), kept) - static_cast<std::ptrdiff_t>(aside.size());
  std::inplace_merge(records.begin(), middle, records.end(), lower);
}

}  // namespace

std::size_t firstAtOrAbove(std::span<const Hz> frequencies, Hz frequency) {
  if (frequencies.empty()) return 0;
  // Halving without a branch on the data: which half is taken cannot be foretold, and a wrong
  // guess would cost more than the step itself.
  const Hz* base = frequencies.data();
  std::size_t left = frequencies.size();
  while (left > 1) {
    const std::size_t half = left / 2;
    base += half * static_cast<std::size_t>(base[half - 1] < frequency);
    left -= half;
  }
  return static_cast<std::size_t>(base - frequencies.data()) + (*base < frequency ? 1 : 0);
}

StationTable::StationTable(std::vector<StationList> lists) : lists_(std::move(lists)) {
  for (std::size_t place = 0; place < lists_.size(); ++place) {
    StationList& list = lists_[place];
    const auto firstSet = static_cast<std::uint16_t>(sets_.size());
    for (const std::string& name : list.sets) sets_.push_back({name, place, {}});
    std::vector<Record> records = std::exchange(list.records, {});
    for (Record& record : records) record.set = static_cast<std::uint16_t>(record.set + firstSet);
    order(records);
    const auto middle = static_cast<std::ptrdiff_t>(records_.size());
    if (middle == 0)
      records_ = std::move(records);
    else
      records_.insert(records_.end(), records.begin(), records.end());
    std::inplace_merge(records_.begin(), records_.begin() + middle, records_.end(), lower);
  }
  for (const Record& record : records_) {
    std::vector<Hz>& ofSet = sets_[record.set].frequencies;
    if (ofSet.empty() || ofSet.back() != record.frequency) ofSet.push_back(record.frequency);
    if (!frequencies_.empty() && frequencies_.back() == record.frequency) continue;
    frequencies_.push_back(record.frequency);
    firsts_.push_back(static_cast<std::uint32_t>(&record - records_.data()));
  }
  firsts_.push_back(static_cast<std::uint32_t>(records_.size()));
}

std::optional<std::size_t> StationTable::exactly(Hz frequency) const {
  return nearest(frequency, 0);
}

std::optional<std::size_t> StationTable::nearest(Hz frequency, Hz tolerance) const {
  const std::size_t up = firstAtOrAbove(frequencies_, frequency);
  constexpr std::int64_t kFar = std::numeric_limits<std::int64_t>::max();
  const std::int64_t wanted = frequency;
  const std::int64_t upward = up < size() ? frequencies_[up] - wanted : kFar;
  const std::int64_t downward = up > 0 ? wanted - frequencies_[up - 1] : kFar;
  if (std::min(upward, downward) > tolerance) return std::nullopt;
  return downward <= upward ? up - 1 : up;
}

}  // namespace kelvane::ambrel
