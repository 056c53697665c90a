#pragma once

#include <array>
#include <cstddef>
#include <string>
#include <string_view>

#include "components/ambrel/stations/station_words.h"

namespace kelvane::ambrel {

/// What the tables of stations tell of each.
enum class ListColumn { Frequency, Name, Info, Times, Days, Site, Target, Mode, Set, Count };

/// The columns' headings.
inline constexpr std::array<std::string_view, static_cast<std::size_t>(ListColumn::Count)>
    kListHeadings = {"kHz",  "Station", "Language, info", "UTC", "Days",
                     "Site", "Target",  "Mode",           "Set"};

/// The text in one column of a record, UTF-8; the details are the record's.
std::string cellOf(const StationTable& table, Hz frequency, const Record& record,
                   const StationDetails& details, ListColumn column);

}  // namespace kelvane::ambrel
