#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <utility>
#include <vector>

#include "contract/types.h"

namespace kelvane::ambrel {

/// Place of the first of the ordered frequencies that is at least the given one.
std::size_t firstAtOrAbove(std::span<const Hz> frequencies, Hz frequency);

/// Frequencies, each once and in order, and where among all records those of each begin.
class PlaceIndex {
 public:
  /// Adds the next frequency, above all that are there, none below 0.
  void add(Hz frequency, std::size_t firstRecord) {
    places_.push_back({frequency, static_cast<std::uint32_t>(firstRecord)});
  }
  /// The frequency that was added last; -1 before the first.
  Hz highest() const { return places_.empty() ? -1 : places_.back().frequency; }
  /// To be called once, when all are added; then the index can be asked.
  void finish(std::size_t recordCount);

  std::size_t size() const { return places_.size() - 1; }
  Hz frequency(std::size_t place) const { return places_[place].frequency; }
  /// The records of a place: the first one and the one behind the last.
  std::pair<std::size_t, std::size_t> records(std::size_t place) const {
    return {places_[place].firstRecord, places_[place + 1].firstRecord};
  }
  /// The place that a record belongs to.
  std::size_t placeOfRecord(std::size_t record) const;

  /// Place of the first frequency that is at least the given one; size() for none.
  std::size_t atOrAbove(Hz frequency) const;

  /// Place of the frequency nearest to the given one and at most `tolerance` Hz away; of two that
  /// are equally near the lower one.
  std::optional<std::size_t> nearest(Hz frequency, Hz tolerance) const;

 private:
  struct Place {
    Hz frequency;
    std::uint32_t firstRecord;
  };

  std::size_t bucketOf(Hz frequency) const { return static_cast<std::size_t>(frequency) >> shift_; }

  std::vector<Place> places_;  ///< and one more, behind the last
  /// For stretches of equal width the place at which each begins, so that a search only has to look
  /// through the few places of one stretch.
  std::vector<std::uint32_t> buckets_;
  unsigned shift_ = 0;
};

}  // namespace kelvane::ambrel
