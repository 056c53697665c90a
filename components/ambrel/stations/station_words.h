#pragma once

#include <optional>
#include <span>
#include <string>

#include "components/ambrel/bands/band_plan.h"
#include "components/ambrel/schedule/air_clock.h"
#include "components/ambrel/schedule/codes.h"
#include "components/ambrel/stations/known_stations.h"
#include "components/ambrel/stations/station_table.h"

namespace kelvane::ambrel {

/// What is told about one record, each part by itself; parts that a list lacks are empty.
struct StationDetails {
  std::string name;
  std::string info;  ///< of a record in a set
  std::string extra;
  std::string language;
  std::string times;  ///< "0600-0700", in the present season
  std::string days;
  std::string site;
  std::string target;
  Setting mode = -1;  ///< -1, and a filter of 0: the list leaves it open
  Setting filter = 0;
  std::optional<GeoPoint> place;  ///< of the transmitter
};

/// The record must be one of those at that frequency.
StationDetails detailsOf(const StationTable& table, Hz frequency, const Record& record,
                         const AirTime& time, const Codes& codes);

/// A mode and the bandwidth (Hz) to go with it.
struct Recommendation {
  Setting mode = -1;
  Setting filter = 0;
};

/// What to receive a record with: what its list says, else what a set's record at the same
/// frequency says (`there` are all records at it), else what suits the band.
Recommendation recommendation(std::span<const Record> there, const StationTable& table,
                              const StationDetails& details, const BandEntry& band);

/// What the panel shows of a found station.
struct StationWords {
  std::string name;
  std::string info;
  std::string extra;
};

/// The words for a found station. The info has language and times and says when it is not on the
/// air; the extra has site and target and tells who else is at the frequency.
StationWords wordsFor(const StationTable& table, const FoundStation& found, const AirTime& time,
                      const Codes& codes);

/// Where a found station's transmitter is, and who says so: nobody is named where its own record
/// does. For a record of the operator's own or of a set it is the schedule ("HFCC") of the first
/// one that is on the air there.
struct HeardPlace {
  GeoPoint place;
  std::string source;
};
std::optional<HeardPlace> heardPlace(const StationTable& table, const FoundStation& found,
                                     const AirTime& time, const Codes& codes);

/// What comes on the air at a found station's frequency within the hour: "next 1800: Radio Prague";
/// empty for nothing, and where it is the found one, whose words say when it begins.
std::string nextHere(const StationTable& table, const FoundStation& found, const Codes& codes);

}  // namespace kelvane::ambrel
