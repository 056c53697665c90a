#include "components/ambrel/schedule/hfcc.h"

#include <algorithm>
#include <map>
#include <memory>
#include <utility>
#include <vector>

#include "base/encoding.h"
#include "base/number.h"
#include "base/text.h"
#include "components/ambrel/schedule/unzip.h"

namespace kelvane::ambrel {

namespace {

constexpr std::size_t kShortestRecord = 124;

/// Columns of a line, counted from 1 as the schedule's own description does.
std::string_view hfccColumns(std::string_view line, std::size_t first, std::size_t last) {
  if (line.size() < first) return {};
  return trimmed(line.substr(first - 1, last - first + 1));
}

template <class Take>
void eachHfccLine(std::string_view text, Take take) {
  std::size_t number = 0;
  for (std::size_t at = 0; at < text.size();) {
    const auto end = std::min(text.find('\n', at), text.size());
    std::string_view line = text.substr(at, end - at);
    if (line.ends_with('\r')) line.remove_suffix(1);
    ++number;
    if (!line.empty() && line.front() != ';')
      take(line, std::exchange(at, end + 1), number);
    else
      at = end + 1;
  }
}

std::optional<Day> readHfccDate(std::string_view text) {
  const auto value = wholeNumber(text);
  if (!value || text.size() != 6) return std::nullopt;
  const int day = static_cast<int>(*value / 10000), month = static_cast<int>(*value / 100 % 100),
            year = 2000 + static_cast<int>(*value % 100);
  if (month < 1 || month > 12 || day < 1 || day > daysInMonth(year, month)) return std::nullopt;
  return dayOf(Date{year, month, day});
}

int readHfccTime(std::string_view text) {
  const auto value = wholeNumber(text);
  if (!value || text.size() != 4 || *value % 100 > 59 || *value > 2400) return -1;
  return static_cast<int>(*value / 100 * 60 + *value % 100);
}

/// Sunday is 1 there.
std::uint8_t readHfccDays(std::string_view text) {
  std::uint8_t days = 0;
  for (const char c : text) {
    if (c >= '1' && c <= '7') days |= static_cast<std::uint8_t>(1 << (c == '1' ? 6 : c - '2'));
  }
  return days == 0 ? DayRule::kAllWeekdays : days;
}

/// What is wrong with a line, nullptr for nothing.
const char* readHfccRecord(std::string_view line, ListedRecord& listed, DateWindow& dates) {
  if (line.size() < kShortestRecord) return "the line is too short";
  const auto khz = wholeNumber(hfccColumns(line, 1, 5));
  if (!khz || *khz <= 0 || *khz > 2'000'000) return "the frequency cannot be read";
  const int start = readHfccTime(hfccColumns(line, 7, 10)),
            stop = readHfccTime(hfccColumns(line, 12, 15));
  if (start < 0 || stop < 0 || start == kMinutesOfDay) return "the times cannot be read";
  const auto from = readHfccDate(hfccColumns(line, 81, 86)),
             to = readHfccDate(hfccColumns(line, 88, 93));
  if (!from || !to) return "the dates cannot be read";
  listed.frequency = static_cast<Hz>(*khz * 1000);
  listed.record.start = static_cast<std::uint16_t>(start) & 0x7FF;
  const int minutes = stop - start;
  listed.record.minutes =
      static_cast<std::uint16_t>(minutes > 0 ? minutes : minutes + kMinutesOfDay);
  listed.record.weekdays = readHfccDays(hfccColumns(line, 73, 79));
  dates = {*from, *to, false};
  return nullptr;
}

void readHfccLines(StationList& list) {
  std::map<std::pair<Day, Day>, std::uint32_t> rules;
  list.rules.emplace_back();  // never referred to
  eachHfccLine(list.text, [&](std::string_view line, std::size_t offset, std::size_t number) {
    ListedRecord listed;
    DateWindow dates;
    if (const char* problem = readHfccRecord(line, listed, dates))
      return list.problems.add(number, problem);
    const auto next = static_cast<std::uint32_t>(list.rules.size());
    const auto [rule, isNew] = rules.try_emplace({dates.from, dates.to}, next);
    if (isNew) list.rules.push_back({DayRule(), dates});
    listed.record.hasRule = 1;
    listed.source = {static_cast<std::uint32_t>(offset), rule->second};
    list.records.push_back(listed);
  });
  list.count = list.records.size();
}

std::string hfccText(const std::string& content) {
  return isUtf8(content) ? content : utf8FromLatin1(content);
}

void readHfccNames(const std::string& content,
                   std::unordered_map<std::string, std::string>& names) {
  const std::string text = hfccText(content);
  eachHfccLine(text, [&](std::string_view line, std::size_t, std::size_t) {
    const std::string_view name = hfccColumns(line, 5, 54);
    if (!name.empty()) names.emplace(hfccColumns(line, 1, 3), name);
  });
}

/// "ABC name CCC 52N19 002W43".
void readHfccSites(const std::string& content, HfccNames& names) {
  const std::string text = hfccText(content);
  eachHfccLine(text, [&](std::string_view line, std::size_t, std::size_t) {
    std::string_view rest = trimmed(line.substr(std::min<std::size_t>(4, line.size())));
    std::vector<std::string_view> behind;
    while (behind.size() < 3) {
      const auto blank = rest.rfind(' ');
      if (blank == rest.npos) break;
      behind.push_back(rest.substr(blank + 1));
      rest = trimmed(rest.substr(0, blank));
    }
    if (behind.size() < 3) return;
    HfccNames::Site site{std::string(rest),
                         readPlace(std::string(behind[1]) + '-' + std::string(behind[0]))};
    names.sites.emplace(hfccColumns(line, 1, 3), std::move(site));
  });
}

bool isHfccSchedule(std::string_view text) {
  const std::string_view head = text.substr(0, 4000);
  return head.find("CIRAF") != head.npos && head.find("STRT") != head.npos;
}

std::string lowerName(std::string_view name) {
  return lower(name.substr(name.find_last_of("/\\") + 1));
}

std::string nameOr(const std::unordered_map<std::string, std::string>& names,
                   std::string_view code) {
  const auto there = names.find(std::string(code));
  return there == names.end() ? std::string(code) : there->second;
}

}  // namespace

StationList readHfcc(std::string_view zip, std::string origin) {
  StationList list;
  list.form = StationList::Form::Hfcc;
  list.usersOwn = true;
  list.origin = std::move(origin);
  ZipReading unpacked = unzip(zip, kLargestHfcc);
  list.refusal = unpacked.refusal;
  if (!list.refusal.empty()) return list;
  auto names = std::make_shared<HfccNames>();
  for (ZipMember& member : unpacked.members) {
    const std::string name = lowerName(member.name);
    if (name.starts_with("site"))
      readHfccSites(member.content, *names);
    else if (name.starts_with("broadcas"))
      readHfccNames(member.content, names->broadcasters);
    else if (name.starts_with("lang"))
      readHfccNames(member.content, names->languages);
    else if (name.starts_with("admin"))
      readHfccNames(member.content, names->administrations);
    else if (list.text.empty() && isHfccSchedule(member.content))
      list.text = hfccText(member.content);
  }
  list.hfcc = std::move(names);
  if (list.text.empty()) {
    list.refusal = "There is no HFCC schedule in it.";
    return list;
  }
  readHfccLines(list);
  if (list.records.size() <= list.problems.count)
    list.refusal = "This is no HFCC schedule: " + list.problems.text();
  if (!list.refusal.empty()) return list;
  // A season begins on a Sunday; records may begin a few days off it.
  const std::size_t middle = list.records.size() / 2;
  const Day day = list.rules[list.records[middle].source.rule].dates.from;
  list.season = seasonAt(UtcMinute{day + 7} * kMinutesOfDay);
  list.sets = {"HFCC " + list.season->code()};
  return list;
}

HfccLine hfccLineAt(const StationList& list, std::size_t offset) {
  std::string_view line = std::string_view(list.text).substr(offset);
  line = line.substr(0, line.find_first_of("\r\n"));
  HfccLine words;
  const auto site = list.hfcc->sites.find(std::string(hfccColumns(line, 48, 50)));
  const bool known = site != list.hfcc->sites.end();
  words.site = known ? site->second.name : std::string(hfccColumns(line, 48, 50));
  if (known) words.place = site->second.place;
  words.station = nameOr(list.hfcc->broadcasters, hfccColumns(line, 118, 120));
  if (words.station.empty())
    words.station = nameOr(list.hfcc->administrations, hfccColumns(line, 114, 116));
  const std::string_view languages = hfccColumns(line, 103, 112);
  for (std::size_t at = 0; at < languages.size(); at += 3)
    words.language +=
        (at == 0 ? "" : ", ") + nameOr(list.hfcc->languages, trimmed(languages.substr(at, 3)));
  const std::string_view zones = hfccColumns(line, 17, 46);
  if (!zones.empty()) words.target = "zones " + std::string(zones);
  if (const auto power = hfccColumns(line, 52, 55); !power.empty())
    words.power = std::string(power) + " kW";
  if (const auto azimuth = hfccColumns(line, 57, 63); wholeNumber(azimuth)) words.azimuth = azimuth;
  words.digital = hfccColumns(line, 95, 95) == "N";
  return words;
}

}  // namespace kelvane::ambrel
