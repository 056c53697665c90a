#include "components/ambrel/stations/known_stations.h"

#include <algorithm>
#include <limits>
#include <span>
#include <utility>

namespace kelvane::ambrel {

namespace {

/// Lower speaks first.
int rankOf(const Record& record, const AirTime& time, Long preferredSet) {
  constexpr int kOffAir = 5;
  const bool preferred = record.set == preferredSet;
  const bool own = record.marks & Record::kOwn;
  if (!time.isScheduled(record)) return preferred ? 0 : own ? 1 : 3;
  if (time.onAir(record)) return preferred ? 0 : own ? 1 : record.irregular ? 4 : 2;
  return kOffAir + time.momentOf(record).untilStart(record);
}

/// Place in an ordered row to which a step from the position leads; its size where there is none.
/// `atOrAbove` finds the first place of the row that is not below a frequency.
template <class AtOrAbove>
std::size_t stepFrom(Hz position, Long direction, std::size_t size, AtOrAbove atOrAbove) {
  if (direction > 0)
    return position == std::numeric_limits<Hz>::max() ? size : atOrAbove(position + 1);
  const std::size_t above = atOrAbove(position);
  return above > 0 ? above - 1 : size;
}

}  // namespace

const Record& recordToShow(const StationTable& table, std::size_t place, const AirTime& time,
                           Long preferredSet) {
  const auto records = table.at(place);
  const Record* best = &records.front();
  if (records.size() == 1) return *best;
  // The operator's own come first among those of one frequency.
  const int lowest = preferredSet >= 0 ? 0 : best->marks & Record::kOwn ? 1 : 2;
  int bestRank = std::numeric_limits<int>::max();
  for (const Record& record : records) {
    const int rank = rankOf(record, time, preferredSet);
    if (rank >= bestRank) continue;
    best = &record;
    bestRank = rank;
    if (rank <= lowest) break;
  }
  return *best;
}

void KnownStations::setTable(std::shared_ptr<const StationTable> table) {
  clock_.forget();
  found_.reset();
  walkedSet_ = -1;
  table_ = std::move(table);
}

bool KnownStations::find(Hz frequency, Hz tolerance) {
  const auto place = table_->places().nearest(frequency, tolerance);
  if (place) {
    select(*place);
  } else {
    found_.reset();
    walkedSet_ = -1;
  }
  return place.has_value();
}

FrqRecord KnownStations::walkAll(Long direction) {
  const PlaceIndex& row = table_->places();
  const auto atOrAbove = [&row](Hz frequency) { return row.atOrAbove(frequency); };
  std::size_t place = stepFrom(position_, direction, row.size(), atOrAbove);
  while (place < row.size() && isSkipped(place))
    place = direction > 0 ? place + 1 : place > 0 ? place - 1 : row.size();
  if (place < row.size()) return arriveAt(row.frequency(place), place + 1, row.size());
  return stay(table_->places().nearest(position_, 0), row.size());
}

FrqRecord KnownStations::walkInSet(Long set, Long direction) {
  if (set < 0 || static_cast<std::size_t>(set) >= table_->sets().size()) return stay({}, 0);
  const std::span<const Hz> row = table_->frequenciesOf(static_cast<std::size_t>(set));
  const auto atOrAbove = [row](Hz frequency) { return firstAtOrAbove(row, frequency); };
  const std::size_t place = stepFrom(position_, direction, row.size(), atOrAbove);
  if (place < row.size()) {
    walkedSet_ = set;
    return arriveAt(row[place], place + 1, row.size());
  }
  const std::size_t here = atOrAbove(position_);
  const bool onIt = here < row.size() && row[here] == position_;
  return stay(onIt ? std::optional(here) : std::nullopt, row.size());
}

FrqRecord KnownStations::walkSets(Long direction) {
  const auto count = static_cast<Long>(table_->sets().size());
  const Long step = direction > 0 ? 1 : -1;
  // Where no set is current a step enters the row of sets at the end that it comes from.
  const Long current = currentSet() >= 0 ? currentSet() : direction > 0 ? -1 : count;
  for (Long set = current + step; set >= 0 && set < count; set += step) {
    const std::span<const Hz> row = table_->frequenciesOf(static_cast<std::size_t>(set));
    const auto other =
        std::find_if(row.begin(), row.end(), [this](Hz f) { return f != position_; });
    if (other == row.end()) continue;
    walkedSet_ = set;
    return arriveAt(*other, static_cast<std::size_t>(set) + 1, static_cast<std::size_t>(count));
  }
  return {currentSet() + 1, count, position_};
}

Long KnownStations::currentSet() const {
  if (!found_) return -1;
  return walkedSet_ >= 0 ? walkedSet_ : found_->record->set;
}

FrqRecord KnownStations::arriveAt(Hz frequency, std::size_t position, std::size_t count) {
  position_ = frequency;
  select(*table_->places().nearest(frequency, 0));
  return {static_cast<Long>(position), static_cast<Count>(count), frequency};
}

FrqRecord KnownStations::stay(std::optional<std::size_t> place, std::size_t count) const {
  return {place ? static_cast<Long>(*place) + 1 : 0, static_cast<Count>(count), position_};
}

bool KnownStations::isSkipped(std::size_t place) const {
  bool skipped = false;
  for (const Record& record : table_->at(place)) {
    // The operator's own come first.
    if (!(record.marks & Record::kOwn)) break;
    if (!(record.marks & Record::kSkip)) return false;
    skipped = true;
  }
  return skipped;
}

bool KnownStations::isIn(Long set, std::size_t place) const {
  const auto records = table_->at(place);
  return std::any_of(records.begin(), records.end(),
                     [set](const Record& record) { return record.set == set; });
}

void KnownStations::select(std::size_t place) {
  if (walkedSet_ >= 0 && !isIn(walkedSet_, place)) walkedSet_ = -1;
  table_->expect(place);  // reading the clock takes as long as fetching them
  const AirTime& time = clock_.now(*table_);
  found_ = FoundStation{place, table_->frequency(place),
                        &recordToShow(*table_, place, time, walkedSet_), time.minute()};
}

}  // namespace kelvane::ambrel
