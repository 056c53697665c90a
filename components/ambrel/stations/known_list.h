#pragma once

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "components/ambrel/ambrel_core.h"
#include "components/ambrel/list_cells.h"

namespace kelvane::ambrel {

/// What the operator asks of the list.
struct ListQuery {
  std::string text{};           ///< words that a row must have, in any column; empty: every row
  bool onAirOnly = false;       ///< without scheduled stations that are not on the air now
  bool favouritesOnly = false;  ///< only favourites of the operator's own list
  ListColumn sort = ListColumn::Frequency;
  bool descending = false;
};

/// The list of known frequencies as its windows show it. Rows are sought out beside the
/// user-interface thread; the newest query wins.
class KnownList {
 public:
  /// `changed` is called on the user-interface thread when other rows are there.
  KnownList(AmbrelCore& core, std::function<void()> changed);
  ~KnownList();

  /// Asks for other rows; those that are there stay until the new ones are found.
  void ask(ListQuery query);
  const ListQuery& query() const { return query_; }
  /// Asks anew where the data is another, or another minute may have brought other rows. To be
  /// called every now and then.
  void follow();
  bool isSearching() const { return searching_; }

  std::size_t rows() const { return rows_.size(); }
  /// UTF-8.
  std::string cell(std::size_t row, ListColumn column) const;
  Hz frequency(std::size_t row) const;
  /// The first row whose frequency is nearest to the given one; rows() where there is none.
  std::size_t rowNear(Hz frequency) const;
  /// What a row is known by for as long as the data stays; rows() has none.
  struct Station {
    std::shared_ptr<const StationTable> table;
    std::uint32_t record = 0;
    Hz frequency = -1;
  };
  Station station(std::size_t row) const;
  /// The row of that station, or where it is gone the one nearest to its frequency; rows() where
  /// there is none.
  std::size_t rowOf(const Station& station) const;
  /// Tells the panel that the operator chose the row.
  void choose(std::size_t row);

  /// "23 of 13528 stations", and what the operator should know of the schedule's age.
  std::string status() const;

 private:
  const StationDetails& details(std::size_t row) const;
  void take(std::vector<std::uint32_t> rows, std::shared_ptr<const StationTable> table,
            UtcMinute minute);
  void refuse(const std::string& why, std::shared_ptr<const StationTable> table);

  AmbrelCore& core_;
  std::function<void()> changed_;
  ListQuery query_;
  bool searching_ = false;
  std::string refusal_;  ///< why the last search came to no end; mostly empty
  std::shared_ptr<const StationTable>
      refused_;  ///< what it sought in: not sought in by itself again
  std::shared_ptr<const StationTable> table_ = std::make_shared<const StationTable>();
  std::unique_ptr<const AirTime> time_;  ///< of the table's records, when the rows were sought
  std::vector<std::uint32_t> rows_;      ///< places of the table's records
  /// The row last asked about: a window asks for the cells of a row one after the other.
  mutable std::size_t detailedRow_ = static_cast<std::size_t>(-1);
  mutable StationDetails details_;
  std::shared_ptr<std::atomic<std::uint64_t>> newest_;  ///< number of the newest query
  Background background_;  ///< last, so that its jobs end before what they use
};

}  // namespace kelvane::ambrel
