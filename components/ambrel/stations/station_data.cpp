#include "components/ambrel/stations/station_data.h"

#include <algorithm>
#include <filesystem>
#include <string_view>
#include <utility>

#include "base/safe_file.h"
#include "components/ambrel/schedule/schedule_store.h"
#include "components/ambrel/stations/known_sets.h"
#include "components/ambrel/stations/own_stations.h"

namespace kelvane::ambrel {

namespace fs = std::filesystem;

namespace {

constexpr std::string_view kStart = "known-", kEnd = ".txt";

StationList readKnownFile(const fs::path& file, const DataFiles& files) {
  FileReading reading = readWhenFree(file, kLargestKnownText, files.disk());
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
  // Its heading was such in older versions, and the operator's own list bears that name.
  for (std::string& set : list.sets)
    if (set == kOwnSet) set += " (" + pathText(file.filename()) + ")";
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

void takeOwn(const DataFiles& files, std::vector<StationList>& lists,
             std::vector<StationList>& refused) {
  StationList own = readOwnStations(files);
  if (own.count > 0)
    lists.insert(lists.begin(), std::move(own));
  else if (!own.refusal.empty())
    refused.push_back(std::move(own));
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
  // The operator's own list comes before all others.
  takeOwn(files, lists, data.refused);
  if (!schedule) schedule = keptSchedule(files);
  if (schedule) (schedule->refusal.empty() ? lists : data.refused).push_back(std::move(*schedule));
  if (std::optional<StationList> hfcc = keptHfcc(files))
    (hfcc->refusal.empty() ? lists : data.refused).push_back(std::move(*hfcc));
  limitSets(lists, data.refused);
  data.table = std::make_shared<const StationTable>(std::move(lists));
  return data;
}

StationData withOwnStations(const StationData& data, const DataFiles& files) {
  StationData now;
  std::vector<StationList> lists = data.table->listsAgain();
  std::erase_if(lists, [](const StationList& list) { return list.form == StationList::Form::Own; });
  for (const StationList& list : data.refused) {
    if (list.form != StationList::Form::Own) now.refused.push_back(list);
  }
  takeOwn(files, lists, now.refused);
  limitSets(lists, now.refused);
  now.table = std::make_shared<const StationTable>(std::move(lists));
  return now;
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
