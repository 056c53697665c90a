#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>

#include "components/ambrel/geo.h"

namespace kelvane::ambrel {

/// Where transmitter sites are, as the text that comes with EiBi's schedules tells.
class SitePlaces {
 public:
  SitePlaces() = default;
  /// Reads the text's table of sites. Lines that are none are passed over; a text without the table
  /// gives no places.
  explicit SitePlaces(std::string_view text);

  std::size_t size() const { return places_.size(); }
  /// The place that a schedule's codes name, as in `Codes::site`.
  std::optional<GeoPoint> at(std::string_view site, std::string_view homeCountry) const;

 private:
  void take(std::string_view line, std::string& country);

  std::unordered_map<std::string, GeoPoint> places_;  ///< by "CCC-code"; "CCC-" is the usual site
};

/// Whether a text is the one that comes with EiBi's schedules.
bool isSiteText(std::string_view text);

}  // namespace kelvane::ambrel
