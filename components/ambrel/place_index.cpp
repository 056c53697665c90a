#include "components/ambrel/place_index.h"

#include <algorithm>
#include <limits>

namespace kelvane::ambrel {

namespace {

/// Steps over the elements below the wanted one, halving the row without a branch on the data:
/// which half is taken cannot be foretold, and a wrong guess would cost more than the step itself.
template <class Element, class Key>
const Element* halve(const Element* base, std::size_t count, Hz wanted, Key key) {
  if (count == 0) return base;
  while (count > 1) {
    const std::size_t half = count / 2;
    base += half * static_cast<std::size_t>(key(base[half - 1]) < wanted);
    count -= half;
  }
  return base + (key(*base) < wanted ? 1 : 0);
}

}  // namespace

std::size_t firstAtOrAbove(std::span<const Hz> row, Hz wanted) {
  const Hz* const found = halve(row.data(), row.size(), wanted, [](Hz each) { return each; });
  return static_cast<std::size_t>(found - row.data());
}

void PlaceIndex::finish(std::size_t recordCount) {
  const Hz highest = places_.empty() ? 0 : places_.back().frequency;
  const std::size_t wanted = places_.size() / 2 + 1;
  while ((static_cast<std::size_t>(highest) >> shift_) > wanted) ++shift_;
  buckets_.reserve(bucketOf(highest) + 2);
  for (std::size_t place = 0; place < places_.size(); ++place) {
    while (buckets_.size() <= bucketOf(places_[place].frequency))
      buckets_.push_back(static_cast<std::uint32_t>(place));
  }
  buckets_.push_back(static_cast<std::uint32_t>(places_.size()));
  add(kHighestHz, recordCount);
}

std::size_t PlaceIndex::placeOfRecord(std::size_t record) const {
  const auto behind = std::upper_bound(
      places_.begin(), places_.end(), record,
      [](std::size_t wanted, const Place& place) { return wanted < place.firstRecord; });
  return static_cast<std::size_t>(behind - places_.begin()) - 1;
}

std::size_t PlaceIndex::atOrAbove(Hz frequency) const {
  if (frequency <= 0) return 0;
  const std::size_t bucket = bucketOf(frequency);
  if (bucket + 1 >= buckets_.size()) return size();
  const std::uint32_t first = buckets_[bucket], end = buckets_[bucket + 1];
  const Place* const found = halve(places_.data() + first, end - first, frequency,
                                   [](const Place& place) { return place.frequency; });
  return static_cast<std::size_t>(found - places_.data());
}

std::optional<std::size_t> PlaceIndex::nearest(Hz frequency, Hz tolerance) const {
  constexpr std::int64_t kFar = std::numeric_limits<std::int64_t>::max();
  const std::size_t up = atOrAbove(frequency);
  const std::int64_t wanted = frequency;
  const std::int64_t upward = up < size() ? places_[up].frequency - wanted : kFar;
  const std::int64_t downward = up > 0 ? wanted - places_[up - 1].frequency : kFar;
  if (std::min(upward, downward) > tolerance) return std::nullopt;
  return downward <= upward ? up - 1 : up;
}

}  // namespace kelvane::ambrel
