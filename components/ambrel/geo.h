#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "components/ambrel/utc.h"

namespace kelvane::ambrel {

/// A place on the earth, in degrees: north and east are positive.
struct GeoPoint {
  double latitude = 0;
  double longitude = 0;

  bool operator==(const GeoPoint&) const = default;
};

/// Reads a locator of 4, 6 or 8 characters ("JO21SX": its middle), degrees ("52.1, 5.2",
/// "52.1 -5.2") or degrees and minutes with letters ("52N06-005E12", "49N36'17\"-08E32'20\""). None
/// where the text is no place.
std::optional<GeoPoint> readPlace(std::string_view text);

/// Along the shortest way, on a sphere.
double distanceKm(const GeoPoint& from, const GeoPoint& to);
/// The direction in which that way begins, 0 to 360 degrees from north over east.
double bearing(const GeoPoint& from, const GeoPoint& to);
/// How high the sun's middle stands over the horizon, degrees, to about a tenth.
double sunElevation(const GeoPoint& at, UtcMinute minute);

/// "2140 km, 128 deg SE; day there, night here". With the sun up to six degrees below the horizon
/// it is twilight.
std::string pathWords(const GeoPoint& here, const GeoPoint& there, UtcMinute minute);

}  // namespace kelvane::ambrel
