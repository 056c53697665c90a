#include "components/ambrel/stations/station_words.h"

#include <algorithm>
#include <span>
#include <string_view>
#include <utility>
#include <vector>

#include "components/ambrel/lists/entry_texts.h"
#include "components/ambrel/schedule/eibi_line.h"
#include "components/ambrel/schedule/eibi_schedule.h"
#include "components/ambrel/schedule/hfcc.h"
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
constexpr std::size_t kMostNamed = 12;

bool isSchedule(const StationTable& table, const Record& record) {
  return table.listOf(record).isSchedule();
}

void append(std::string& text, const std::string& more, const char* between) {
  if (more.empty()) return;
  if (!text.empty()) text += between;
  text += more;
}

bool isHfcc(const StationTable& table, const Record& record) {
  return table.listOf(record).form == StationList::Form::Hfcc;
}

/// "0600-0700", as the present season has it.
std::string timesOf(const Record& record, const AirTime& time) {
  const std::int32_t start = time.momentOf(record).startOf(record);
  const std::int32_t stop = start + record.minutes;
  return timeText(start) + "-" + timeText(stop > kMinutesOfDay ? stop - kMinutesOfDay : stop);
}

StationDetails hfccDetails(const StationTable& table, const Record& record, const AirTime& time) {
  HfccLine line = hfccLineAt(table.listOf(record), table.sourceOf(record).line);
  StationDetails details;
  details.name = std::move(line.station);
  details.language = std::move(line.language);
  details.times = timesOf(record, time);
  details.days = lists::weekdaysText(record.weekdays);
  details.site = std::move(line.site);
  append(details.site, line.power, ", ");
  if (!line.azimuth.empty()) append(details.site, line.azimuth + "\u00B0", ", ");
  details.target = std::move(line.target);
  details.mode = static_cast<Setting>(line.digital ? Mode::Drm : Mode::Am);
  details.place = line.place;
  return details;
}

/// What HFCC's registrations have of the found station of another schedule; empty for nothing. They
/// say from where and with what power, and not what was heard.
std::string registeredThere(const StationTable& table, const FoundStation& found,
                            const AirTime& time) {
  for (const Record& record : table.at(found.place)) {
    if (!isHfcc(table, record) || &record == found.record || !time.onAir(record)) continue;
    const StationDetails details = hfccDetails(table, record, time);
    return "HFCC: " + details.name + ", " + details.site;
  }
  return {};
}

StationDetails scheduleDetails(const StationTable& table, Hz frequency, const Record& record,
                               const AirTime& time, const Codes& codes) {
  const ScheduleLine line = scheduleLineAt(table.listOf(record).text, table.sourceOf(record).line);
  StationDetails details;
  details.name = line.station.empty() ? codes.country(line.country) : line.station;
  details.language = codes.languages(line.language);
  details.times = timesOf(record, time);
  details.days = line.days;
  details.site = codes.site(line.site, line.country);
  details.place = codes.place(line.site, line.country);
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

StationDetails ownDetails(const StationTable& table, const Record& record) {
  const StationList& list = table.listOf(record);
  std::string_view line = std::string_view(list.text).substr(table.sourceOf(record).line);
  line = line.substr(0, line.find('\n'));
  lists::Entry entry;
  lists::readOwnLine(line, list.headings, entry);
  StationDetails details;
  details.name = std::move(entry.name);
  details.info = lists::oneLine(entry.note);
  details.extra = std::move(entry.group);
  append(details.extra, entry.tags, ", ");
  details.times = lists::timesText(entry);
  details.days = std::move(entry.days);
  details.mode = entry.mode;
  details.filter = entry.width;
  return details;
}

/// What a list that is no schedule says of the setting at one of its records.
Recommendation settingOf(const StationTable& table, const Record& record) {
  if (record.marks & Record::kOwn) {
    const StationDetails own = ownDetails(table, record);
    return {own.mode, own.filter};
  }
  const KnownLine line = knownLineAt(table.listOf(record).text, table.sourceOf(record).line);
  return {line.mode, line.filter};
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
    // HFCC's registrations are mostly those of the stations that the other schedule names.
    if (isHfcc(table, record) && !isHfcc(table, *found.record)) continue;
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
  for (std::size_t i = 0; i < std::min(names.size(), kMostNamed); ++i) append(text, names[i], ", ");
  if (names.size() > kMostNamed) text += " and others";
  return "+" + std::to_string(names.size()) + " more: " + text;
}

}  // namespace

StationDetails detailsOf(const StationTable& table, Hz frequency, const Record& record,
                         const AirTime& time, const Codes& codes) {
  if (isHfcc(table, record)) return hfccDetails(table, record, time);
  if (isSchedule(table, record)) return scheduleDetails(table, frequency, record, time, codes);
  if (record.marks & Record::kOwn) return ownDetails(table, record);
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
    const Recommendation line = settingOf(table, record);
    if (best.mode >= 0 && line.mode != best.mode) continue;
    best = line;
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
    if (isHfcc(table, *found.record)) append(words.extra, "(HFCC)", " ");
    append(words.extra, registeredThere(table, found, time), "; ");
  }
  if (found.record->marks & Record::kOwn) {
    std::string times = time.onAir(*found.record) ? "" : "not on the air now,";
    append(times, details.times, " ");
    append(times, details.days, " ");
    append(times, words.info, "; ");
    words.info = std::move(times);
    // The panel shows the rest only behind some information.
    if (words.info.empty()) words.info.swap(words.extra);
  }
  append(words.extra, othersText(othersThere(table, found, details.name, time, codes)), "; ");
  return words;
}

std::optional<HeardPlace> heardPlace(const StationTable& table, const FoundStation& found,
                                     const AirTime& time, const Codes& codes) {
  const auto placeOf = [&](const Record& record) {
    return detailsOf(table, found.frequency, record, time, codes).place;
  };
  if (const auto place = placeOf(*found.record)) return HeardPlace{*place, {}};
  // Of a scheduled station whose site nobody knows, another one's says nothing.
  if (isSchedule(table, *found.record)) return std::nullopt;
  for (const Record& record : table.at(found.place)) {
    if (!isSchedule(table, record) || !time.onAir(record)) continue;
    const auto place = placeOf(record);
    if (!place) return std::nullopt;
    return HeardPlace{*place, isHfcc(table, record) ? "HFCC" : "EiBi"};
  }
  return std::nullopt;
}

std::string nextHere(const StationTable& table, const FoundStation& found, const Codes& codes) {
  constexpr std::int32_t kSoon = 60;
  const UtcMinute now = found.minute;
  const AirTime time(table, now);
  const Record* next = nullptr;
  std::int32_t soonest = kSoon + 1;
  for (const Record& record : table.at(found.place)) {
    if (!time.isScheduled(record) || time.onAir(record)) continue;
    const std::int32_t wait = time.momentOf(record).untilStart(record);
    // Its days, and the season it is in then, decide at the moment when it begins.
    if (wait < soonest && AirTime(table, now + wait).onAir(record)) {
      next = &record;
      soonest = wait;
    }
  }
  if (!next || next == found.record) return {};
  const StationDetails details = detailsOf(table, found.frequency, *next, time, codes);
  std::string words = "next " + timeText(minuteOfDay(now + soonest)) + ": " + details.name;
  append(words, details.language, ", ");
  return words;
}

}  // namespace kelvane::ambrel
