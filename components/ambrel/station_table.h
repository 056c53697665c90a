#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "components/ambrel/station_list.h"

namespace kelvane::ambrel {

/// All known frequencies of several lists, each frequency once and in order, with the records that
/// the lists have at it. Never changes; a changed list makes a new table. A frequency's place
/// counts from 0.
class StationTable {
 public:
  /// A set of one of the lists, and its frequencies, each once and in order.
  struct Set {
    std::string name;
    std::size_t list = 0;
    std::vector<Hz> frequencies;
  };

  StationTable() : StationTable(std::vector<StationList>()) {}
  /// Takes the records out of the lists. Where records have one frequency they keep the lists'
  /// order. Sets without a record are left out.
  explicit StationTable(std::vector<StationList> lists);

  std::size_t size() const { return frequencies_.size(); }
  std::size_t recordCount() const { return records_.size(); }
  Hz frequency(std::size_t place) const { return frequencies_[place]; }
  std::span<const Hz> frequencies() const { return frequencies_; }
  std::span<const Record> records() const { return records_; }
  std::span<const Record> at(std::size_t place) const {
    return std::span(records_).subspan(firsts_[place], firsts_[place + 1] - firsts_[place]);
  }

  /// The records at that very frequency; none where it is not known.
  std::span<const Record> atFrequency(Hz frequency) const {
    const auto place = exactly(frequency);
    return place ? at(*place) : std::span<const Record>();
  }

  /// Place of that very frequency.
  std::optional<std::size_t> exactly(Hz frequency) const;
  /// Place of the frequency nearest to the given one and at most `tolerance` Hz away; of two that
  /// are equally near the lower one.
  std::optional<std::size_t> nearest(Hz frequency, Hz tolerance) const;

  const std::vector<Set>& sets() const { return sets_; }
  const std::vector<StationList>& lists() const { return lists_; }
  const StationList& listOf(const Record& record) const { return lists_[sets_[record.set].list]; }

 private:
  std::vector<StationList> lists_;
  std::vector<Set> sets_;
  std::vector<Record> records_;
  std::vector<Hz> frequencies_;
  std::vector<std::uint32_t> firsts_;  ///< of each frequency its first record; one more at the end
};

/// Place of the first of the ordered frequencies that is at least the given one.
std::size_t firstAtOrAbove(std::span<const Hz> frequencies, Hz frequency);

}  // namespace kelvane::ambrel
