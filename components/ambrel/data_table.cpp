#include "components/ambrel/data_table.h"

#include <algorithm>
#include <array>

#include "components/ambrel/kilohertz.h"
#include "contract/modes.h"

namespace kelvane::ambrel {

namespace {

const std::array kPlanColumns{
    DataTable::Column{"From kHz", true}, DataTable::Column{"To kHz", true},
    DataTable::Column{"Band"},           DataTable::Column{"Step Hz", true},
    DataTable::Column{"Mode"},           DataTable::Column{"Filter Hz", true}};

/// The columns of a set; its own name stands above the table already.
constexpr std::array kSetColumns{ListColumn::Frequency, ListColumn::Name, ListColumn::Info,
                                 ListColumn::Times,     ListColumn::Days, ListColumn::Site,
                                 ListColumn::Target,    ListColumn::Mode};

}  // namespace

DataTable::DataTable(AmbrelCore& core) : core_(core) { takeOver(); }

void DataTable::takeOver() {
  stations_ = core_.data().table;
  time_ = std::make_unique<const AirTime>(*stations_, core_.airTime().minute());
  if (!core_.bands()) return;
  plan_ = core_.bands()->plan();
  region_ = core_.bands()->region();
}

bool DataTable::follow() {
  const bool otherRegion = core_.bands() && core_.bands()->region() != region_;
  if (stations_ == core_.data().table && !otherRegion) return false;
  const std::string name = isPlan() ? std::string() : set().name;
  takeOver();
  const auto& sets = stations_->sets();
  const auto again = std::ranges::find(sets, name, &StationTable::Set::name);
  const bool stillThere = !name.empty() && again != sets.end();
  look(stillThere ? static_cast<std::size_t>(again - sets.begin()) + 1 : 0);
  return true;
}

std::vector<std::string> DataTable::tables() const {
  std::vector<std::string> names{"Band plan, region " + std::to_string(region_ + 1)};
  for (const StationTable::Set& set : stations_->sets())
    names.push_back(set.name + ", " + std::to_string(set.count) + " frequencies");
  return names;
}

void DataTable::look(std::size_t table) {
  if (table > stations_->sets().size()) return;
  table_ = table;
  records_.clear();
  if (isPlan()) return;
  const auto all = stations_->records();
  for (std::size_t record = 0; record < all.size(); ++record) {
    if (all[record].set == table_ - 1) records_.push_back(static_cast<std::uint32_t>(record));
  }
}

std::vector<DataTable::Column> DataTable::columns() const {
  if (isPlan()) return {kPlanColumns.begin(), kPlanColumns.end()};
  std::vector<Column> columns;
  for (const ListColumn column : kSetColumns)
    columns.push_back({std::string(kListHeadings[static_cast<std::size_t>(column)]),
                       column == ListColumn::Frequency});
  return columns;
}

std::size_t DataTable::rows() const { return isPlan() ? plan_.size() : records_.size(); }

StationDetails DataTable::detailsOf(std::size_t row) const {
  return ambrel::detailsOf(*stations_, frequencyOf(row), stations_->records()[records_[row]],
                           *time_, *core_.codes());
}

std::string DataTable::bandCell(const BandEntry& band, std::size_t column) const {
  switch (column) {
    case 0:
      return kilohertzText(band.start);
    case 1:
      return kilohertzText(band.end);
    case 2:
      return band.name;
    case 3:
      return std::to_string(band.step);
    case 4:
      return std::string(modeName(band.mode));
    default:
      return std::to_string(band.filter);
  }
}

std::string DataTable::cell(std::size_t row, std::size_t column) const {
  if (row >= rows()) return {};
  if (isPlan()) return bandCell(plan_[row], column);
  if (column >= kSetColumns.size()) return {};
  return cellOf(*stations_, frequencyOf(row), stations_->records()[records_[row]], detailsOf(row),
                kSetColumns[column]);
}

std::size_t DataTable::rowAt(Hz frequency) const {
  if (frequency < 0 || rows() == 0) return rows();
  if (isPlan()) return plan_.at(frequency);
  const auto above = std::ranges::lower_bound(
      records_, frequency, {},
      [this](std::uint32_t record) { return stations_->frequencyOfRecord(record); });
  const auto row = static_cast<std::size_t>(above - records_.begin());
  if (row == 0) return 0;
  const bool below =
      row == rows() || frequency - frequencyOf(row - 1) < frequencyOf(row) - frequency;
  if (!below) return row;
  // The first of those at one frequency.
  const Hz nearest = frequencyOf(row - 1);
  return rowAt(nearest);
}

void DataTable::choose(std::size_t row) {
  if (row >= rows()) return;
  if (isPlan()) return core_.choose(plan_[row].start, plan_[row].mode, plan_[row].filter);
  const Recommendation best = core_.recommendationFor(*stations_, frequencyOf(row), detailsOf(row));
  core_.choose(frequencyOf(row), best.mode, best.filter);
}

}  // namespace kelvane::ambrel
