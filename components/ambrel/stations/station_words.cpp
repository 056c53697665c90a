#include "components/ambrel/stations/station_words.h"

#include <algorithm>
#include <vector>

#include "components/ambrel/schedule/eibi_line.h"
#include "components/ambrel/schedule/eibi_schedule.h"
#include "components/ambrel/stations/known_sets.h"
#include "contract/modes.h"

namespace kelvane::ambrel {

namespace {

/// Bandwidth that suits a mode, Hz, where nothing else is known.
Setting usualFilter(Setting mode) {
  switch (static_cast<Mode>(mode)) {
    case Mode::Am:
    case Mode::Sam:
      return 6000;
    case Mode::Fm:
      return 12000;
    case Mode::Cw:
    case Mode::Rtty:
      return 500;
    case Mode::Drm:
      return 10000;
    default:
      return 2400;
  }
}

/// More than the panel has room for: the rest is read in the tool tip.
constexpr std::size_t kOthersNamed = 12;

bool isSchedule(const StationTable& table, const Record& record) {
  return table.listOf(record).form == StationList::Form::Eibi;
}

void append(std::string& text, const std::string& more, const char* between) {
  if (more.empty()) return;
  if (!text.empty()) text += between;
  text += more;
}

StationDetails scheduleDetails(const StationTable& table, Hz frequency, const Record& record,
                               const AirTime& time, const Codes& codes) {
  const ScheduleLine line = scheduleLineAt(table.listOf(record).text, table.sourceOf(record).line);
  StationDetails details;
  details.name = line.station.empty() ? codes.country(line.country) : line.station;
  details.language = codes.languages(line.language);
  const std::int32_t start = time.momentOf(record).startOf(record);
  const std::int32_t stop = start + record.minutes;
  details.times =
      timeText(start) + "-" + timeText(stop > kMinutesOfDay ? stop - kMinutesOfDay : stop);
  details.days = line.days;
  details.site = codes.site(line.site, line.country);
  // "China to China" tells nothing.
  if (codes.target(line.target) != codes.country(line.country))
    details.target = codes.target(line.target);
  const auto rule = readDays(line.days);
  // A mode in their place says nothing about days.
  if (rule && rule->mode) details.days.clear();
  const auto mode =
      rule && rule->mode ? rule->mode : modeByWords(line.language, line.station, frequency);
  if (mode) details.mode = static_cast<Setting>(*mode);
  return details;
}

/// Who else is at the found one's frequency, each name once: on the air now, and beside a set's
/// record also what the sets have there. A set's record beside a scheduled station is left out, as
/// it mostly is the same station.
std::vector<std::string> othersThere(const StationTable& table, const FoundStation& found,
                                     const std::string& name, const AirTime& time,
                                     const Codes& codes) {
  const bool amongSets = !isSchedule(table, *found.record);
  std::vector<std::string> names;
  for (const Record& record : table.at(found.place)) {
    if (!(isSchedule(table, record) ? time.onAir(record) : amongSets)) continue;
    const std::string other = detailsOf(table, found.frequency, record, time, codes).name;
    if (other == name || std::find(names.begin(), names.end(), other) != names.end()) continue;
    names.push_back(other);
  }
  return names;
}

std::string othersText(const std::vector<std::string>& names) {
  if (names.empty()) return {};
  std::string text;
  for (std::size_t i = 0; i < std::min(names.size(), kOthersNamed); ++i)
    append(text, names[i], ", ");
  if (names.size() > kOthersNamed) text += " and others";
  return "+" + std::to_string(names.size()) + " more: " + text;
}

}  // namespace

StationDetails detailsOf(const StationTable& table, Hz frequency, const Record& record,
                         const AirTime& time, const Codes& codes) {
  if (isSchedule(table, record)) return scheduleDetails(table, frequency, record, time, codes);
  KnownLine line = knownLineAt(table.listOf(record).text, table.sourceOf(record).line);
  StationDetails details;
  details.name = std::move(line.name);
  details.info = std::move(line.info);
  details.extra = std::move(line.extra);
  details.mode = line.mode;
  details.filter = line.filter;
  return details;
}

Recommendation recommendation(std::span<const Record> there, const StationTable& table,
                              const StationDetails& details, const BandEntry& band) {
  Recommendation best{details.mode, details.filter};
  for (const Record& record : there) {
    if (best.mode >= 0 && best.filter > 0) break;
    if (isSchedule(table, record)) continue;
    const KnownLine line = knownLineAt(table.listOf(record).text, table.sourceOf(record).line);
    if (best.mode >= 0 && line.mode != best.mode) continue;
    best = {line.mode, line.filter};
  }
  if (best.mode < 0) best.mode = band.mode;
  if (best.filter > 0) return best;
  best.filter = best.mode == band.mode ? band.filter : usualFilter(best.mode);
  return best;
}

StationWords wordsFor(const StationTable& table, const FoundStation& found, const AirTime& time,
                      const Codes& codes) {
  StationDetails details = detailsOf(table, found.frequency, *found.record, time, codes);
  StationWords words{details.name, details.info, details.extra};
  if (isSchedule(table, *found.record)) {
    if (!time.onAir(*found.record)) words.info = "not on the air now,";
    append(words.info, details.language, " ");
    append(words.info, details.times, " ");
    append(words.info, details.days, " ");
    words.extra = details.site;
    if (!details.target.empty()) append(words.extra, "to " + details.target, " ");
  }
  append(words.extra, othersText(othersThere(table, found, details.name, time, codes)), "; ");
  return words;
}

}  // namespace kelvane::ambrel
