#pragma once

#include <cstddef>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>

#include "components/ambrel/geo.h"
#include "components/ambrel/stations/station_list.h"

namespace kelvane::ambrel {

/// The instance's own copy of an HFCC season.
inline constexpr const char* kHfccName = "schedule-hfcc.zip";
/// Most bytes that a season has when it is unpacked.
inline constexpr std::size_t kLargestHfcc = std::size_t{64} << 20;

/// What the codes of an HFCC schedule mean, from the tables that come with it.
struct HfccNames {
  struct Site {
    std::string name;
    std::optional<GeoPoint> place;
  };
  std::unordered_map<std::string, Site> sites;
  std::unordered_map<std::string, std::string> broadcasters, languages, administrations;
};

/// One line of the schedule in words.
struct HfccLine {
  std::string station, language, site, target, days;
  std::string power;    ///< "250 kW"
  std::string azimuth;  ///< degrees; empty for all directions
  std::optional<GeoPoint> place;
  bool digital = false;
};

/// Makes a list of a season's zip: its schedule is found by content, its tables by their names.
StationList readHfcc(std::string_view zip, std::string origin);

/// The line at an offset that the list's records tell.
HfccLine hfccLineAt(const StationList& list, std::size_t offset);

}  // namespace kelvane::ambrel
