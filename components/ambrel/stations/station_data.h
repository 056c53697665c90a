#pragma once

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "components/ambrel/data_files.h"
#include "components/ambrel/stations/station_list.h"
#include "components/ambrel/stations/station_table.h"

namespace kelvane::ambrel {

/// Everything known about stations, as read from the files.
struct StationData {
  std::shared_ptr<const StationTable> table;
  /// Lists that could not be used, with their refusals; they have no records.
  std::vector<StationList> refused;
};

/// Reads all texts of known frequencies, and joins them with a schedule: the given one, or else the
/// kept one. Of several files of one name the first that can be read is used.
StationData loadStations(const DataFiles& files, std::optional<StationList> schedule);

/// The same stations with the operator's own list as its file is now.
StationData withOwnStations(const StationData& data, const DataFiles& files);

/// What is wrong with lists, in words, a line for each that has something wrong.
std::vector<std::string> problemsOf(const StationData& data);

}  // namespace kelvane::ambrel
