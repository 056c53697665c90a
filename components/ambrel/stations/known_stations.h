#pragma once

#include <cstddef>
#include <memory>
#include <optional>
#include <utility>
#include <vector>

#include "components/ambrel/schedule/air_clock.h"
#include "components/ambrel/stations/station_table.h"
#include "contract/types.h"

namespace kelvane::ambrel {

/// A known frequency that was found: its place in the table, the record that speaks for it, and
/// the moment for which that was decided.
struct FoundStation {
  std::size_t place = 0;
  Hz frequency = -1;
  const Record* record = nullptr;
  UtcMinute minute = 0;
};

/// The record that speaks for a frequency at a moment. A record of `preferredSet` comes first; then
/// one of the operator's own list, unless it has times and this is none of them, a scheduled
/// station that is on the air, a set's record, an irregular station in its time, and last the
/// station that comes on the air next.
const Record& recordToShow(const StationTable& table, std::size_t place, const AirTime& time,
                           Long preferredSet);

/// Where the database stands among the known frequencies, and how it walks through them. A walk
/// goes from the present position to the next frequency that is another one; where there is none
/// it stays, and answers the position it had.
class KnownStations {
 public:
  explicit KnownStations(UtcClock utcNow) : clock_(std::move(utcNow)) {}

  /// Puts another table in the place of the present one. What was found is forgotten.
  void setTable(std::shared_ptr<const StationTable> table);

  /// The position from which walks go on; -1 stands below all frequencies.
  void moveTo(Hz frequency) { position_ = frequency; }
  Hz position() const { return position_; }

  /// Finds the known frequency nearest to the given one, at most `tolerance` Hz away; the position
  /// stays.
  bool find(Hz frequency, Hz tolerance);

  /// Decides anew, for the present minute, which record speaks for what was found.
  void lookAgain() { select(found_->place); }

  /// Passes over what the operator's own list says to.
  FrqRecord walkAll(Long direction);
  FrqRecord walkInSet(Long set, Long direction);
  /// Walks to the first frequency of the next or previous set, or to its second where the first
  /// is the present position.
  FrqRecord walkSets(Long direction);

  const std::optional<FoundStation>& found() const { return found_; }
  /// Set of what was found; -1 for none. A set that was walked into stays the current one for as
  /// long as what is found is in it.
  Long currentSet() const;

  /// The present minute for the table.
  const AirTime& airTime() { return clock_.now(*table_); }
  /// The minute that was last asked for, the clock not being read anew; only where something is
  /// found.
  const AirTime& lastTime() const { return clock_.last(); }

 private:
  FrqRecord arriveAt(Hz frequency, std::size_t position, std::size_t count);
  FrqRecord stay(std::optional<std::size_t> place, std::size_t count) const;
  /// Whether the operator's own list has it and says to pass it over, whatever other lists say.
  bool isSkipped(std::size_t place) const;
  bool isIn(Long set, std::size_t place) const;
  void select(std::size_t place);

  std::shared_ptr<const StationTable> table_ = std::make_shared<const StationTable>();
  AirClock clock_;
  Hz position_ = -1;
  Long walkedSet_ = -1;
  std::optional<FoundStation> found_;
};

}  // namespace kelvane::ambrel
