#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "components/ambrel/ambrel_core.h"
#include "components/ambrel/list_cells.h"

namespace kelvane::ambrel {

/// The database as tables, one of which is looked at: the band plan of the region, then each set of
/// known frequencies.
class DataTable {
 public:
  struct Column {
    std::string heading;
    bool number = false;
  };

  explicit DataTable(AmbrelCore& core);

  /// "Band plan, region 1", "Time signals, 57", ...
  std::vector<std::string> tables() const;
  /// Looks at another table; a place beyond the last is passed over.
  void look(std::size_t table);
  std::size_t table() const { return table_; }
  /// Takes over what changed in the database; answers whether anything did. The table that is
  /// looked at stays where it is still there. To be called every now and then.
  bool follow();

  std::vector<Column> columns() const;
  std::size_t rows() const;
  /// UTF-8.
  std::string cell(std::size_t row, std::size_t column) const;
  /// The row that holds a frequency, in a set the one nearest to it; rows() where there is none.
  std::size_t rowAt(Hz frequency) const;
  /// Tells the panel that the operator chose the row: a station, or the beginning of a band.
  void choose(std::size_t row);

 private:
  bool isPlan() const { return table_ == 0; }
  const StationTable::Set& set() const { return stations_->sets()[table_ - 1]; }
  Hz frequencyOf(std::size_t row) const { return stations_->frequencyOfRecord(records_[row]); }
  StationDetails detailsOf(std::size_t row) const;
  std::string bandCell(const BandEntry& band, std::size_t column) const;
  void takeOver();

  AmbrelCore& core_;
  BandPlan plan_ = builtInBandPlan();
  Long region_ = 0;
  std::shared_ptr<const StationTable> stations_;
  std::unique_ptr<const AirTime> time_;
  std::size_t table_ = 0;
  std::vector<std::uint32_t> records_;  ///< of the set, places among all records
};

}  // namespace kelvane::ambrel
