#include "components/ambrel/stations/known_list.h"

#include <algorithm>
#include <cmath>
#include <optional>
#include <tuple>
#include <utility>

#include "components/ambrel/schedule/schedule_store.h"
#include "components/ambrel/search_text.h"

namespace kelvane::ambrel {

namespace {

/// One query at work: it touches nothing that the user-interface thread changes.
struct Search {
  std::shared_ptr<const StationTable> table;
  std::shared_ptr<const Codes> codes;
  UtcMinute minute = 0;
  ListQuery query;
  std::uint64_t number = 0;
  std::shared_ptr<const std::atomic<std::uint64_t>> newest;

  bool isOvertaken() const { return *newest != number; }

  /// The rows; none when a newer query has come.
  std::optional<std::vector<std::uint32_t>> run() const;

 private:
  struct Row {
    std::string key;
    std::uint32_t record = 0;
  };

  bool takes(Hz frequency, const Record& record, const AirTime& time,
             const std::vector<std::string>& words, std::string& key) const;
};

bool Search::takes(Hz frequency, const Record& record, const AirTime& time,
                   const std::vector<std::string>& words, std::string& key) const {
  // What has no times is there at any time: time signals, weather, calling frequencies.
  if (query.favouritesOnly && !(record.marks & Record::kFavourite)) return false;
  if (query.onAirOnly && time.isScheduled(record) && !time.onAir(record)) return false;
  const bool byFrequency = query.sort == ListColumn::Frequency;
  if (words.empty() && byFrequency) return true;
  const StationDetails details = detailsOf(*table, frequency, record, time, *codes);
  std::string all;
  for (std::size_t column = 0; column < kListHeadings.size() && !words.empty(); ++column)
    all += cellOf(*table, frequency, record, details, static_cast<ListColumn>(column)) + '\n';
  if (!hasAllWords(searchForm(all), words)) return false;
  if (!byFrequency) key = searchForm(cellOf(*table, frequency, record, details, query.sort));
  return true;
}

std::optional<std::vector<std::uint32_t>> Search::run() const {
  const AirTime time(*table, minute);
  const std::vector<std::string> words = searchWords(query.text);
  std::vector<Row> found;
  std::uint32_t number = 0;  // of the record among all
  for (std::size_t place = 0; place < table->size(); ++place) {
    if (isOvertaken()) return std::nullopt;
    for (const Record& record : table->at(place)) {
      Row row{{}, number++};
      if (takes(table->frequency(place), record, time, words, row.key))
        found.push_back(std::move(row));
    }
  }
  const auto before = [](const Row& a, const Row& b) {
    return std::tie(a.key, a.record) < std::tie(b.key, b.record);
  };
  if (query.sort != ListColumn::Frequency) std::sort(found.begin(), found.end(), before);
  if (query.descending) std::reverse(found.begin(), found.end());
  std::vector<std::uint32_t> rows;
  rows.reserve(found.size());
  for (const Row& row : found) rows.push_back(row.record);
  return rows;
}

}  // namespace

KnownList::KnownList(AmbrelCore& core, std::function<void()> changed)
    : core_(core),
      changed_(std::move(changed)),
      newest_(std::make_shared<std::atomic<std::uint64_t>>(0)) {
  ask({});
}

void KnownList::follow() {
  if (searching_ || (refused_ && refused_ == core_.data().table)) return;
  const bool older = query_.onAirOnly && time_->minute() != core_.airTime().minute();
  if (older || table_ != core_.data().table) ask(query_);
}

KnownList::~KnownList() { ++*newest_; }

void KnownList::ask(ListQuery query) {
  query_ = std::move(query);
  searching_ = true;
  refusal_.clear();
  refused_.reset();
  const std::uint64_t number = ++*newest_;
  const Search search{
      core_.data().table, core_.codes(), core_.airTime().minute(), query_, number, newest_};
  // When the list is gone its number is overtaken, and nobody asks for `this` any more.
  const auto job = [this, search] {
    auto rows = search.run();
    if (!rows) return;
    core_.post([this, search, rows = std::move(*rows)]() mutable {
      if (!search.isOvertaken()) take(std::move(rows), search.table, search.minute);
    });
  };
  background_.run("seeking stations", job, [this, search](const std::string& why) {
    core_.post([this, search, why] {
      if (!search.isOvertaken()) refuse(why, search.table);
    });
  });
}

void KnownList::refuse(const std::string& why, std::shared_ptr<const StationTable> table) {
  searching_ = false;
  refusal_ = why;
  refused_ = std::move(table);
  changed_();
}

void KnownList::take(std::vector<std::uint32_t> rows, std::shared_ptr<const StationTable> table,
                     UtcMinute minute) {
  searching_ = false;
  rows_ = std::move(rows);
  table_ = std::move(table);
  time_ = std::make_unique<const AirTime>(*table_, minute);
  detailedRow_ = static_cast<std::size_t>(-1);
  changed_();
}

const StationDetails& KnownList::details(std::size_t row) const {
  if (detailedRow_ != row) {
    details_ =
        detailsOf(*table_, frequency(row), table_->records()[rows_[row]], *time_, *core_.codes());
    detailedRow_ = row;
  }
  return details_;
}

std::string KnownList::cell(std::size_t row, ListColumn column) const {
  if (row >= rows_.size()) return {};
  return cellOf(*table_, frequency(row), table_->records()[rows_[row]], details(row), column);
}

Hz KnownList::frequency(std::size_t row) const {
  return row < rows_.size() ? table_->frequencyOfRecord(rows_[row]) : -1;
}

std::size_t KnownList::rowNear(Hz wanted) const {
  std::size_t best = rows_.size();
  std::int64_t bestDistance = INT64_MAX;
  for (std::size_t row = 0; row < rows_.size(); ++row) {
    const std::int64_t distance = std::abs(std::int64_t{frequency(row)} - wanted);
    if (distance >= bestDistance) continue;
    best = row;
    bestDistance = distance;
  }
  return best;
}

KnownList::Station KnownList::station(std::size_t row) const {
  if (row >= rows_.size()) return {};
  return {table_, rows_[row], frequency(row)};
}

std::size_t KnownList::rowOf(const Station& station) const {
  if (station.table != table_) return station.table ? rowNear(station.frequency) : rows_.size();
  const auto found = std::find(rows_.begin(), rows_.end(), station.record);
  return found == rows_.end() ? rowNear(station.frequency)
                              : static_cast<std::size_t>(found - rows_.begin());
}

void KnownList::choose(std::size_t row) {
  if (row >= rows_.size()) return;
  const Recommendation best = core_.recommendationFor(*table_, frequency(row), details(row));
  core_.choose(frequency(row), best.mode, best.filter);
}

std::string KnownList::status() const {
  std::string text = std::to_string(rows_.size()) + " of " +
                     std::to_string(table_->records().size()) + " stations";
  if (!refusal_.empty()) text += "; nothing was sought: " + refusal_;
  if (!time_) return text;
  bool schedule = false;
  for (const StationList& list : table_->lists()) {
    if (!list.season) continue;
    schedule = true;
    text += "; schedule " + ageText(*list.season, time_->minute());
  }
  if (!schedule) text += "; no schedule is loaded";
  return text;
}

}  // namespace kelvane::ambrel
