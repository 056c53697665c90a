#include "components/ambrel/geo.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <numbers>
#include <utility>

#include "base/number.h"
#include "base/text.h"

namespace kelvane::ambrel {

namespace {

constexpr double kEarthKm = 6371.0;
/// With it the sun's upper edge is on the horizon, seen through the air.
constexpr double kSunrise = -0.833;
constexpr double kTwilight = -6;

double radians(double degrees) { return degrees * std::numbers::pi / 180; }
double degrees(double radians) { return radians * 180 / std::numbers::pi; }

bool onEarth(const GeoPoint& point) {
  return std::abs(point.latitude) <= 90 && std::abs(point.longitude) <= 180;
}

/// Two characters of a locator: along the longitude, then the latitude.
bool takePair(std::string_view pair, char first, int most, double& longitude, double& latitude,
              double& width, double& height) {
  const int east = pair[0] - first, north = pair[1] - first;
  if (east < 0 || east >= most || north < 0 || north >= most) return false;
  width /= most;
  height /= most;
  longitude += east * width;
  latitude += north * height;
  return true;
}

std::optional<GeoPoint> readLocator(std::string_view text) {
  const std::string locator = upper(text);
  if (locator.size() != 4 && locator.size() != 6 && locator.size() != 8) return std::nullopt;
  double longitude = -180, latitude = -90, width = 360, height = 180;
  constexpr std::array<std::pair<char, int>, 4> kPairs = {
      {{'A', 18}, {'0', 10}, {'A', 24}, {'0', 10}}};
  for (std::size_t pair = 0; pair < locator.size() / 2; ++pair) {
    const auto [first, most] = kPairs[pair];
    if (!takePair(std::string_view(locator).substr(pair * 2, 2), first, most, longitude, latitude,
                  width, height))
      return std::nullopt;
  }
  return GeoPoint{latitude + height / 2, longitude + width / 2};
}

/// A number without a sign at the text's beginning, which is taken off; -1 where there is none.
double takePlainNumber(std::string_view& text) {
  std::size_t length = 0;
  while (length < text.size() && (isDigit(text[length]) || text[length] == '.')) ++length;
  const double value = length == 0 ? -1 : num(text.substr(0, length));
  text.remove_prefix(length);
  return value;
}

/// "49N36'17\"" at the beginning, which is taken off.
std::optional<double> takeAngle(std::string_view& text, char positive, char negative) {
  double angle = takePlainNumber(text);
  if (angle < 0 || text.empty() || (text[0] != positive && text[0] != negative))
    return std::nullopt;
  const bool minus = text[0] == negative;
  text.remove_prefix(1);
  for (const double part : {60.0, 3600.0}) {
    const double value = takePlainNumber(text);
    if (value >= 60) return std::nullopt;
    if (value >= 0) angle += value / part;
    if (text.empty() || (text[0] != '\'' && text[0] != '"')) break;
    text.remove_prefix(1);
  }
  return minus ? -angle : angle;
}

std::optional<GeoPoint> readLetters(std::string_view text) {
  const auto latitude = takeAngle(text, 'N', 'S');
  if (!latitude) return std::nullopt;
  while (!text.empty() && (text[0] == '-' || text[0] == ' ' || text[0] == ','))
    text.remove_prefix(1);
  const auto longitude = takeAngle(text, 'E', 'W');
  if (!longitude || !trimmed(text).empty()) return std::nullopt;
  return GeoPoint{*latitude, *longitude};
}

std::optional<double> wholeDegrees(std::string_view text) {
  text = trimmed(text);
  const bool minus = text.starts_with('-');
  if (minus || text.starts_with('+')) text.remove_prefix(1);
  const double value = takePlainNumber(text);
  if (value < 0 || !text.empty()) return std::nullopt;
  return minus ? -value : value;
}

std::optional<GeoPoint> readDegrees(std::string_view text) {
  auto between = text.find(',');
  if (between == text.npos) between = text.find_first_of(" ;");
  if (between == text.npos) return std::nullopt;
  const auto latitude = wholeDegrees(text.substr(0, between)),
             longitude = wholeDegrees(text.substr(between + 1));
  if (!latitude || !longitude) return std::nullopt;
  return GeoPoint{*latitude, *longitude};
}

std::string sunWords(const GeoPoint& at, UtcMinute minute) {
  const double elevation = sunElevation(at, minute);
  return elevation > kSunrise ? "day" : elevation > kTwilight ? "twilight" : "night";
}

}  // namespace

std::optional<GeoPoint> readPlace(std::string_view text) {
  text = trimmed(text);
  auto point = readLocator(text);
  if (!point) point = readLetters(text);
  if (!point) point = readDegrees(text);
  return point && onEarth(*point) ? point : std::nullopt;
}

double distanceKm(const GeoPoint& from, const GeoPoint& to) {
  const double north = std::sin(radians(to.latitude - from.latitude) / 2),
               east = std::sin(radians(to.longitude - from.longitude) / 2);
  const double square = north * north + std::cos(radians(from.latitude)) *
                                            std::cos(radians(to.latitude)) * east * east;
  return 2 * kEarthKm * std::asin(std::sqrt(std::min(1.0, square)));
}

double bearing(const GeoPoint& from, const GeoPoint& to) {
  const double east = radians(to.longitude - from.longitude);
  const double a = radians(from.latitude), b = radians(to.latitude);
  const double angle =
      degrees(std::atan2(std::sin(east) * std::cos(b),
                         std::cos(a) * std::sin(b) - std::sin(a) * std::cos(b) * std::cos(east)));
  return angle < 0 ? angle + 360 : angle;
}

double sunElevation(const GeoPoint& at, UtcMinute minute) {
  // From noon of 1 January 2000 on, by the usual short series.
  const double days = (static_cast<double>(minute) - 10957.5 * kMinutesOfDay) / kMinutesOfDay;
  const double meanLongitude = 280.460 + 0.9856474 * days;
  const double anomaly = radians(357.528 + 0.9856003 * days);
  const double longitude =
      radians(meanLongitude + 1.915 * std::sin(anomaly) + 0.020 * std::sin(2 * anomaly));
  const double tilt = radians(23.439 - 0.0000004 * days);
  const double declination = std::asin(std::sin(tilt) * std::sin(longitude));
  const double ascension = std::atan2(std::cos(tilt) * std::sin(longitude), std::cos(longitude));
  const double starTime = radians(280.46062 + 360.98564737 * days + at.longitude);
  const double hourAngle = starTime - ascension;
  const double latitude = radians(at.latitude);
  return degrees(std::asin(std::sin(latitude) * std::sin(declination) +
                           std::cos(latitude) * std::cos(declination) * std::cos(hourAngle)));
}

std::string pathWords(const GeoPoint& here, const GeoPoint& there, UtcMinute minute) {
  constexpr std::array<const char*, 8> kWinds = {"N", "NE", "E", "SE", "S", "SW", "W", "NW"};
  const double angle = bearing(here, there);
  const auto whole = static_cast<int>(std::lround(angle)) % 360;
  const auto wind = static_cast<std::size_t>(std::lround(angle / 45)) % kWinds.size();
  return std::to_string(std::lround(distanceKm(here, there))) + " km, " + std::to_string(whole) +
         "\u00B0 " + kWinds[wind] + "; " + sunWords(there, minute) + " there, " +
         sunWords(here, minute) + " here";
}

}  // namespace kelvane::ambrel
