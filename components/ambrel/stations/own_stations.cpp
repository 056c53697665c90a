#include "components/ambrel/stations/own_stations.h"

#include <algorithm>
#include <filesystem>
#include <system_error>
#include <utility>

#include "base/encoding.h"
#include "base/safe_file.h"
#include "base/text.h"
#include "components/ambrel/rule_book.h"
#include "components/ambrel/text_table.h"

namespace kelvane::ambrel {

namespace fs = std::filesystem;

namespace {

fs::path ownFile(const DataFiles& files) { return files.ownFolder() / lists::kOwnListName; }

/// Times, days and marks of an entry.
void takeRecord(const lists::Entry& entry, RuleBook& book, ListedRecord& listed,
                std::size_t& unknownDays) {
  Record& record = listed.record;
  listed.frequency = entry.frequency;
  record.marks = Record::kOwn;
  if (entry.favourite) record.marks |= Record::kFavourite;
  if (entry.skip) record.marks |= Record::kSkip;
  if (entry.from >= 0) {
    record.marks |= Record::kTimed;
    record.start = static_cast<std::uint16_t>(entry.from) & 0x7FF;
    const int minutes = entry.to - entry.from;
    record.minutes = static_cast<std::uint16_t>(minutes < 0 ? minutes + kMinutesOfDay : minutes);
    if (minutes == 0) record.minutes = 1;
  }
  if (entry.days.empty()) return;
  record.marks |= Record::kTimed;
  const RuleBook::Reading read = book.read(entry.days, {}, {}, 1);
  if (read.daysUnknown) ++unknownDays;
  record.weekdays = read.weekdays;
  record.irregular = read.irregular;
  record.hasRule = read.rule != 0;
  listed.source.rule = read.rule;
}

void readLines(StationList& list) {
  RuleBook book{Season{}};
  const std::string_view text = list.text;
  bool headed = false;
  std::size_t number = 0;
  for (std::size_t begin = 0; begin < text.size();) {
    const auto end = std::min(text.find('\n', begin), text.size());
    const std::string_view line = text.substr(begin, end - begin);
    const std::size_t offset = std::exchange(begin, end + 1);
    ++number;
    const std::string_view content = trimmed(line);
    if (content.empty() || content.front() == '#') continue;
    if (!headed && list.records.empty() && lists::readHeadings(content, list.headings)) {
      headed = true;
      continue;
    }
    lists::Entry entry;
    if (const char* problem = lists::readOwnLine(line, list.headings, entry)) {
      list.problems.add(number, problem);
      continue;
    }
    ListedRecord& listed = list.records.emplace_back();
    listed.source.line = static_cast<std::uint32_t>(offset);
    takeRecord(entry, book, listed, list.unknownDays);
  }
  list.rules = book.takeRules();
}

}  // namespace

StationList ownStationsOf(std::string text) {
  StationList list;
  list.form = StationList::Form::Own;
  list.usersOwn = true;
  list.sets = {kOwnSet};
  list.headings = lists::usualHeadings();
  if (text.empty()) return list;
  list.refusal = checkText(text).reason();
  if (!list.refusal.empty()) return list;
  if (text.starts_with(kUtf8Mark)) text.erase(0, kUtf8Mark.size());
  list.text = isUtf8(text) ? std::move(text) : utf8FromLatin1(text);
  readLines(list);
  list.count = list.records.size();
  return list;
}

StationList readOwnStations(const DataFiles& files) {
  FileReading reading = readWhenFree(ownFile(files), lists::kLargestOwnList, files.disk());
  StationList list = ownStationsOf(std::move(reading.content));
  list.file = ownFile(files);
  if (reading.how != FileReading::Whole && reading.how != FileReading::Missing)
    list.refusal = reading.reason;
  list.unreadable = reading.how == FileReading::Unreadable;
  return list;
}

std::string ownStationsStamp(const DataFiles& files) {
  std::error_code error;
  const auto size = fs::file_size(ownFile(files), error);
  if (error) return {};
  const auto time = fs::last_write_time(ownFile(files), error);
  return std::to_string(size) + ' ' + std::to_string(time.time_since_epoch().count());
}

}  // namespace kelvane::ambrel
