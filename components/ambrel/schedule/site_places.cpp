#include "components/ambrel/schedule/site_places.h"

#include <algorithm>
#include <array>

#include "base/text.h"

namespace kelvane::ambrel {

namespace {

/// The table's name, as its heading and the list of contents have it.
constexpr std::array<std::string_view, 2> kTables = {"Transmitter site codes",
                                                     "Transmitter-site codes"};

/// Where the last of them stands; npos where none does.
std::size_t tableIn(std::string_view text) {
  std::size_t last = text.npos;
  for (const std::string_view table : kTables) {
    const auto at = text.rfind(table);
    if (at != text.npos && (last == text.npos || at > last)) last = at;
  }
  return last;
}

/// Codes are told from each other by their case too ("b", "B", "Cg"). The line that names the
/// country may have its usual site, without a code, whose name may have a dash ("El-Obeid").
bool isCode(std::string_view text, bool besideCountry) {
  const auto small = [](char c) { return isDigit(c) || (c >= 'a' && c <= 'z'); };
  const auto capital = [](char c) { return c >= 'A' && c <= 'Z'; };
  if (text.empty() || text.size() > 3) return false;
  if (besideCountry && text.size() > 1) return std::ranges::all_of(text, small);
  return std::ranges::all_of(text, [&](char c) { return small(c) || capital(c); });
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

bool isSiteText(std::string_view text) { return tableIn(text) != text.npos; }

SitePlaces::SitePlaces(std::string_view text) {
  const auto table = tableIn(text);
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
  bool besideCountry = false;
  if (colon != line.npos && colon >= 1 && colon <= 3 &&
      std::ranges::all_of(line.substr(0, colon), isCapital)) {
    country = line.substr(0, colon);
    line = trimmed(line.substr(colon + 1));
    besideCountry = true;
  }
  std::size_t begin = 0;
  const auto point = placeIn(line, begin);
  if (!point || country.empty()) return;
  const auto dash = line.find('-');
  const std::string_view code = dash < begin ? line.substr(0, dash) : std::string_view();
  const bool coded = isCode(code, besideCountry);
  // Without a code only the country's own line has a site, the usual one.
  if (!coded && !besideCountry) return;
  places_.emplace(country + '-' + (coded ? std::string(code) : std::string()), *point);
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
