#pragma once

#include <string>
#include <string_view>

#include "components/ambrel/data_files.h"
#include "components/ambrel/stations/station_list.h"

namespace kelvane::ambrel {

/// The name of the set that the operator's own list is.
inline constexpr const char* kOwnSet = "My stations";

/// Makes records of the text of the operator's own list. Lines that cannot be read are counted and
/// told; a list without a station has no records.
StationList ownStationsOf(std::string text);

/// Reads that list from the instance's folder; where there is none it has no records.
StationList readOwnStations(const DataFiles& files);

/// Tells one state of its file from another without reading it; empty where there is none.
std::string ownStationsStamp(const DataFiles& files);

}  // namespace kelvane::ambrel
