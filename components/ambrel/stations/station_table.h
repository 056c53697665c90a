#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "components/ambrel/place_index.h"
#include "components/ambrel/stations/station_list.h"

namespace kelvane::ambrel {

/// All known frequencies of several lists, each frequency once and in order, with the records that
/// the lists have at it. Never changes; a changed list makes a new table. A frequency's place
/// counts from 0.
class StationTable {
 public:
  /// A set of one of the lists.
  struct Set {
    std::string name;
    std::size_t list = 0;
    std::size_t count = 0;  ///< of its frequencies, each counted once
    std::size_t first = 0;  ///< of them, among those of all sets
  };

  StationTable() : StationTable(std::vector<StationList>()) {}
  /// Takes the records out of the lists. Where records have one frequency they keep the lists'
  /// order.
  explicit StationTable(std::vector<StationList> lists);

  std::size_t size() const { return places_.size(); }
  Hz frequency(std::size_t place) const { return places_.frequency(place); }
  std::span<const Record> at(std::size_t place) const {
    const auto [first, end] = places_.records(place);
    return std::span(records_).subspan(first, end - first);
  }
  /// Tells the processor that the records at a place are wanted soon.
  void expect(std::size_t place) const {
    __builtin_prefetch(records_.data() + places_.records(place).first);
  }
  /// The rest of one of the table's own records.
  const RecordSource& sourceOf(const Record& record) const {
    return sources_[static_cast<std::size_t>(&record - records_.data())];
  }
  const PlaceIndex& places() const { return places_; }

  /// The records at that very frequency; none where it is not known.
  std::span<const Record> atFrequency(Hz frequency) const {
    const auto place = places_.nearest(frequency, 0);
    return place ? at(*place) : std::span<const Record>();
  }

  /// All records in order of frequency.
  std::span<const Record> records() const { return records_; }
  /// Frequency of the record at a place among all records.
  Hz frequencyOfRecord(std::size_t record) const;

  const std::vector<Set>& sets() const { return sets_; }
  /// The frequencies of a set, each once and in order.
  std::span<const Hz> frequenciesOf(std::size_t set) const {
    return std::span(frequencies_).subspan(sets_[set].first, sets_[set].count);
  }
  const std::vector<StationList>& lists() const { return lists_; }
  /// The lists with their records, as they were when the table was made of them; for another one.
  std::vector<StationList> listsAgain() const;
  const StationList& listOf(const Record& record) const { return lists_[sets_[record.set].list]; }

 private:
  std::vector<ListedRecord> take(std::size_t list);
  void makeRoom();
  void add(const ListedRecord& listed);

  std::vector<StationList> lists_;
  std::vector<Set> sets_;
  std::vector<Hz> frequencies_;  ///< set by set, since there may be thousands of them
  std::vector<Record> records_;
  std::vector<RecordSource> sources_;  ///< of each record
  PlaceIndex places_;
};

}  // namespace kelvane::ambrel
