#include "components/ambrel/schedule/schedule_store.h"

#include <algorithm>
#include <chrono>
#include <string_view>
#include <system_error>
#include <utility>

#include "base/encoding.h"
#include "base/safe_file.h"
#include "base/text.h"
#include "base/unchanging_file.h"
#include "components/ambrel/schedule/codes_file.h"
#include "components/ambrel/schedule/eibi_schedule.h"
#include "components/ambrel/schedule/hfcc.h"
#include "components/ambrel/schedule/site_places.h"
#include "components/ambrel/schedule/unzip.h"

namespace kelvane::ambrel {

namespace fs = std::filesystem;

namespace {

constexpr const char* kKeptName = "schedule-eibi.csv";

/// First line of a kept schedule: what its own name told, which is not in the text itself.
constexpr std::string_view kHead = "# Schedule of season ";
constexpr std::string_view kFrom = " from ";

Season seasonOfFileDate(const fs::path& file) {
  std::error_code error;
  const auto time = fs::last_write_time(file, error);
  if (error) return {};
  const auto moment = std::chrono::file_clock::to_sys(time);
  return seasonAt(std::chrono::floor<std::chrono::minutes>(moment).time_since_epoch().count());
}

StationList listOf(std::string text, Season season, std::string origin) {
  ScheduleReading reading = readEibiSchedule(text, season);
  StationList list;
  list.form = StationList::Form::Eibi;
  list.usersOwn = true;
  list.text = std::move(text);
  list.sets = {"EiBi " + season.code()};
  list.records = std::move(reading.records);
  list.count = list.records.size();
  list.rules = std::move(reading.rules);
  list.season = season;
  list.origin = std::move(origin);
  list.inactive = reading.inactive;
  list.unknownDays = reading.unknownDays;
  list.problems = std::move(reading.problems);
  list.refusal = std::move(reading.refusal);
  return list;
}

StationList refused(const fs::path& file, std::string reason) {
  StationList list;
  list.form = StationList::Form::Eibi;
  list.file = file;
  list.origin = pathText(file.filename());
  list.refusal = std::move(reason);
  return list;
}

/// Parts the first line of a kept schedule; false where it is another text's.
bool readHead(std::string_view text, std::optional<Season>& season, std::string& origin) {
  const std::string_view line = trimmed(text.substr(0, text.find('\n')));
  const auto from = line.find(kFrom);
  if (!line.starts_with(kHead) || from == std::string_view::npos) return false;
  season = seasonOfFileName(line.substr(kHead.size(), from - kHead.size()));
  origin = line.substr(from + kFrom.size());
  return true;
}

}  // namespace

StationList readScheduleFile(const fs::path& file, FileSteps& disk) {
  FileReading reading = readUnchanging(file, kLargestSchedule, disk);
  if (reading.how != FileReading::Whole) {
    const bool missing = reading.how == FileReading::Missing;
    StationList none = refused(file, missing ? "There is no such file." : reading.reason);
    none.unreadable = reading.how == FileReading::Unreadable;
    return none;
  }
  std::string& text = reading.content;
  std::optional<Season> season;
  std::string origin;
  // Somebody may point at another instance's kept copy.
  if (!readHead(text, season, origin)) origin = pathText(file.filename());
  if (!season) season = seasonOfFileName(origin);
  if (!season) season = seasonOfLastHeard(text);
  StationList list = listOf(std::move(text), season.value_or(seasonOfFileDate(file)), origin);
  list.file = file;
  return list;
}

Result<> keepSchedule(const StationList& schedule, const DataFiles& files) {
  std::string_view text = schedule.text;
  if (text.starts_with(kHead)) text.remove_prefix(std::min(text.find('\n') + 1, text.size()));
  std::string kept(kHead);
  kept.append(schedule.season->code()).append(kFrom).append(schedule.origin).append("\r\n");
  kept.append(text);
  return writeFileSafely(files.ownFolder() / kKeptName, kept, files.disk());
}

std::optional<StationList> keptSchedule(const DataFiles& files) {
  const fs::path file = files.ownFolder() / kKeptName;
  std::error_code error;
  if (!fs::exists(file, error)) return std::nullopt;
  StationList list = readScheduleFile(file, files.disk());
  // What is only held by another program is as good as it was.
  if (!list.refusal.empty() && !list.unreadable) {
    const fs::path aside = keepAside(file);
    if (!aside.empty()) list.refusal += " It was put aside as " + pathText(aside) + ".";
  }
  return list;
}

std::optional<StationList> keptHfcc(const DataFiles& files) {
  const fs::path file = files.ownFolder() / kHfccName;
  const FileReading reading = readWhenFree(file, kLargestHfcc, files.disk());
  if (reading.how == FileReading::Missing) return std::nullopt;
  StationList list = reading.how == FileReading::Whole ? readHfcc(reading.content, kHfccName)
                                                       : refused(file, reading.reason);
  list.unreadable = reading.how == FileReading::Unreadable;
  list.file = file;
  return list;
}

std::optional<OtherImport> importOther(const fs::path& file, const DataFiles& files) {
  const FileReading reading = readUnchanging(file, kLargestHfcc, files.disk());
  if (reading.how != FileReading::Whole) return std::nullopt;
  const std::string name = pathText(file.filename());
  if (isZip(reading.content)) {
    const StationList list = readHfcc(reading.content, name);
    if (!list.refusal.empty())
      return OtherImport(
          Failure{name + " was not loaded. " + list.refusal + " The data that was there stays."});
    const Result<> kept =
        writeFileSafely(files.ownFolder() / kHfccName, reading.content, files.disk());
    if (!kept) return OtherImport(Failure{name + " could not be kept: " + kept.reason()});
    std::string words = name + " was loaded: HFCC season " + list.season->code() + ", " +
                        std::to_string(list.count) + " registrations.";
    if (list.problems.count > 0) words += " " + list.problems.text();
    return OtherImport(words);
  }
  if (!isSiteText(reading.content)) return std::nullopt;
  const SitePlaces places(reading.content);
  if (places.size() == 0) return OtherImport(Failure{name + " tells no places of transmitters."});
  const Result<> kept =
      writeFileSafely(files.ownFolder() / kSitesName, reading.content, files.disk());
  if (!kept) return OtherImport(Failure{name + " could not be kept: " + kept.reason()});
  return OtherImport(name + " tells the places of " + std::to_string(places.size()) +
                     " transmitters.");
}

fs::path dropKeptSchedule(const DataFiles& files) {
  fs::path aside;
  for (const char* name : {kHfccName, kKeptName}) {
    const fs::path file = files.ownFolder() / name;
    std::error_code error;
    if (!fs::exists(file, error)) continue;
    if (fs::path moved = keepAside(file); !moved.empty()) aside = std::move(moved);
  }
  return aside;
}

std::string ageText(const Season& season, UtcMinute now) {
  const std::string name = season.name() + ": ";
  const std::string from = dateText(dayOf(season.start())), to = dateText(dayOf(season.end()));
  if (now < season.start()) return name + "in force from " + from;
  if (now < season.end()) return name + "in force until " + to;
  return name + "out of date since " + to;
}

}  // namespace kelvane::ambrel
