#include "components/ambrel/stations/station_data.h"

#include <algorithm>
#include <utility>

#include "base/safe_file.h"
#include "components/ambrel/schedule/schedule_store.h"
#include "components/ambrel/stations/known_sets.h"

namespace kelvane::ambrel {

namespace fs = std::filesystem;

namespace {

constexpr std::string_view kStart = "known-", kEnd = ".txt";

StationList readKnownFile(const fs::path& file, const DataFiles& files) {
  FileReading reading = readPatiently(file, kLargestKnownText, files.disk());
  std::string title = pathText(file.stem());
  if (title.starts_with(kStart)) title.erase(0, kStart.size());
  StationList list;
  if (reading.how == FileReading::Whole)
    list = readKnownSets(std::move(reading.content), title);
  else
    list.refusal = reading.reason.empty() ? "it is no longer there" : reading.reason;
  list.unreadable = reading.how == FileReading::Unreadable;
  list.file = file;
  list.usersOwn = !files.isShipped(file);
  return list;
}

/// Takes the best readable file of a name; those before it that could not be read are refused.
void takeBest(const std::string& name, const DataFiles& files, std::vector<StationList>& lists,
              std::vector<StationList>& refused) {
  for (const fs::path& file : files.named(name)) {
    StationList list = readKnownFile(file, files);
    const bool good = list.refusal.empty();
    (good ? lists : refused).push_back(std::move(list));
    if (good) return;
  }
}

/// Lists that would go beyond the most sets are refused.
void limitSets(std::vector<StationList>& lists, std::vector<StationList>& refused) {
  std::size_t sets = 0;
  for (auto list = lists.begin(); list != lists.end();) {
    sets += list->sets.size();
    if (sets <= kMostSets) {
      ++list;
      continue;
    }
    sets -= list->sets.size();
    list->refusal = "there are too many sets";
    refused.push_back(std::move(*list));
    list = lists.erase(list);
  }
}

}  // namespace

StationData loadStations(const DataFiles& files, std::optional<StationList> schedule) {
  std::vector<StationList> lists;
  StationData data;
  for (const std::string& name : files.namesLike(kStart, kEnd))
    takeBest(name, files, lists, data.refused);
  // What the user wrote speaks before what was shipped.
  std::stable_partition(lists.begin(), lists.end(),
                        [](const StationList& list) { return list.usersOwn; });
  if (!schedule) schedule = keptSchedule(files);
  if (schedule) (schedule->refusal.empty() ? lists : data.refused).push_back(std::move(*schedule));
  limitSets(lists, data.refused);
  data.table = std::make_shared<const StationTable>(std::move(lists));
  return data;
}

std::vector<std::string> problemsOf(const StationData& data) {
  std::vector<std::string> notes;
  for (const StationList& list : data.refused)
    notes.push_back(pathText(list.file) + " is not used: " + list.refusal);
  for (const StationList& list : data.table->lists()) {
    if (list.problems.count > 0) notes.push_back(pathText(list.file) + ": " + list.problems.text());
  }
  return notes;
}

}  // namespace kelvane::ambrel
