#include "components/ambrel/schedule/site_places.h"

#include <algorithm>

#include "base/text.h"

namespace kelvane::ambrel {

namespace {

constexpr std::string_view kTable = "Transmitter-site codes";

bool isCode(std::string_view text) {
  const bool capital = text.size() == 1 && isCapital(text[0]);
  return capital || (!text.empty() && text.size() <= 3 &&
                     std::ranges::all_of(text, [](char c) { return isDigit(c) || isSmall(c); }));
}

/// The first place in a line, and where it begins.
std::optional<GeoPoint> placeIn(std::string_view line, std::size_t& begin) {
  for (std::size_t at = 0; at < line.size();) {
    if (!isDigit(line[at])) {
      ++at;
      continue;
    }
    const auto end = std::min(line.find_first_of(" ,;)/", at), line.size());
    if (const auto point = readPlace(line.substr(at, std::min<std::size_t>(end - at, 40)));
        point && line.substr(at, end - at).find_first_of("NS") != std::string_view::npos) {
      begin = at;
      return point;
    }
    at = end;
  }
  return std::nullopt;
}

}  // namespace

bool isSiteText(std::string_view text) { return text.find(kTable) != text.npos; }

SitePlaces::SitePlaces(std::string_view text) {
  const auto table = text.rfind(kTable);
  if (table == text.npos) return;
  text.remove_prefix(table);
  std::string country;
  while (!text.empty()) {
    const auto end = text.find('\n');
    take(text.substr(0, end), country);
    text.remove_prefix(end == text.npos ? text.size() : end + 1);
  }
}

void SitePlaces::take(std::string_view line, std::string& country) {
  line = trimmed(line);
  const auto colon = line.find(':');
  if (colon != line.npos && colon >= 1 && colon <= 3 &&
      std::ranges::all_of(line.substr(0, colon), isCapital)) {
    country = line.substr(0, colon);
    line = trimmed(line.substr(colon + 1));
  }
  std::size_t begin = 0;
  const auto point = placeIn(line, begin);
  if (!point || country.empty()) return;
  const auto dash = line.find('-');
  const std::string_view code = dash < begin ? line.substr(0, dash) : std::string_view();
  places_.emplace(country + '-' + (isCode(code) ? std::string(code) : std::string()), *point);
}

std::optional<GeoPoint> SitePlaces::at(std::string_view site, std::string_view homeCountry) const {
  std::string key(homeCountry);
  if (site.starts_with('/'))
    key = site.substr(1);
  else
    (key += '-') += site;
  if (key.find('-') == key.npos) key += '-';
  const auto there = places_.find(key);
  return there == places_.end() ? std::nullopt : std::optional(there->second);
}

}  // namespace kelvane::ambrel
