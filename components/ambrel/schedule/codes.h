#pragma once

#include <array>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <utility>
#include <vector>

#include "components/ambrel/schedule/site_places.h"

namespace kelvane::ambrel {

/// The words behind the codes of broadcast schedules.
class Codes {
 public:
  enum class Kind { Language, Country, Area, Site };

  /// Without a text every code stands for itself.
  Codes() = default;
  /// Reads "kind ; code ; words" lines.
  explicit Codes(std::string_view text);
  /// What of the text could not be read, in words.
  const std::vector<std::string>& problems() const { return problems_; }

  /// "E,F" is "English, French"; a code that is not known stays as it is.
  std::string languages(std::string_view codes) const;
  std::string country(std::string_view code) const;
  /// A target: an area of the world or a country.
  std::string target(std::string_view code) const;
  /// Where a transmitter stands: the site's name and its country. A site code "/CCC" or "/CCC-x"
  /// is a relay in country CCC, any other belongs to the station's own country.
  std::string site(std::string_view code, std::string_view homeCountry) const;

  /// Where that is; none where nobody told.
  std::optional<GeoPoint> place(std::string_view code, std::string_view homeCountry) const {
    return places_.at(code, homeCountry);
  }
  void setPlaces(SitePlaces places) { places_ = std::move(places); }

 private:
  const std::string* find(Kind kind, std::string_view code) const;
  std::string wordsOr(Kind kind, std::string_view code) const;

  std::array<std::unordered_map<std::string, std::string>, 4> words_;
  SitePlaces places_;
  std::vector<std::string> problems_;
};

}  // namespace kelvane::ambrel
