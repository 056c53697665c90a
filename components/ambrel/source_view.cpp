#include "components/ambrel/source_view.h"

#include <algorithm>

#include "base/safe_file.h"
#include "components/ambrel/schedule/schedule_store.h"

namespace kelvane::ambrel {

namespace {

std::string contentsOf(const StationList& list) {
  if (list.form == StationList::Form::Own)
    return std::to_string(list.count) + (list.count == 1 ? " station" : " stations");
  if (list.form == StationList::Form::Known)
    return std::to_string(list.sets.size()) + (list.sets.size() == 1 ? " set, " : " sets, ") +
           std::to_string(list.count) + " frequencies";
  std::string text = std::to_string(list.count) + " broadcasts";
  if (list.inactive > 0) text += ", " + std::to_string(list.inactive) + " inactive left out";
  return text;
}

std::string problemsOf(const StationList& list) {
  if (!list.refusal.empty()) return "Not used: " + list.refusal;
  std::string text = list.problems.text();
  if (list.unknownDays > 0) {
    if (!text.empty()) text += " ";
    text += std::to_string(list.unknownDays) + " with days that were not understood.";
  }
  return text;
}

SourceRow rowOf(const StationList& list, UtcMinute now) {
  const bool schedule = list.isSchedule();
  SourceRow row;
  const bool own = list.form == StationList::Form::Own;
  row.kind = schedule ? "Schedule" : own ? "My stations" : "Known frequencies";
  row.name = schedule ? list.origin : pathText(list.file.filename());
  row.path = pathText(list.file);
  row.owner = list.usersOwn ? "own" : "shipped";
  if (list.refusal.empty()) row.contents = contentsOf(list);
  if (list.season) row.age = ageText(*list.season, now);
  row.problems = problemsOf(list);
  return row;
}

SourceRow rowOf(const PlanFile& plan) {
  SourceRow row;
  row.kind = "Band plan R" + std::to_string(plan.region + 1);
  row.name = pathText(plan.file.filename());
  row.path = pathText(plan.file);
  row.owner = plan.usersOwn ? "own" : "shipped";
  if (plan.used) row.contents = std::to_string(plan.entries) + " bands";
  for (const std::string& problem : plan.problems)
    row.problems += (row.problems.empty() ? "Not used: " : " ") + problem + ".";
  return row;
}

bool hasSchedule(const StationTable& table) {
  return std::ranges::any_of(table.lists(),
                             [](const StationList& list) { return list.season.has_value(); });
}

}  // namespace

std::vector<SourceRow> sourceRows(AmbrelCore& core) {
  std::vector<SourceRow> rows;
  const UtcMinute now = core.airTime().minute();
  for (const StationList& list : core.data().table->lists()) rows.push_back(rowOf(list, now));
  std::ranges::stable_partition(rows, [](const SourceRow& row) { return !row.age.empty(); });
  for (const StationList& list : core.data().refused) rows.push_back(rowOf(list, now));
  if (!core.bands()) return rows;
  for (const PlanFile& plan : core.bands()->files()) rows.push_back(rowOf(plan));
  return rows;
}

std::string sourceDetails(const SourceRow& row) {
  std::string text = row.kind + ", " + row.owner + ": " + row.path;
  for (const std::string& fact : {row.contents, row.age, row.problems}) {
    if (!fact.empty()) text += "\r\n" + fact;
  }
  return text;
}

std::string sourceStatus(const AmbrelCore& core) {
  const StationTable& table = *core.data().table;
  std::string text = std::to_string(table.records().size()) + " stations on " +
                     std::to_string(table.size()) + " frequencies in " +
                     std::to_string(table.sets().size()) + " sets.";
  if (!hasSchedule(table)) text += " No schedule is loaded.";
  const std::string& last = core.isLoading() ? "Loading..." : core.loadWords();
  return last.empty() ? text : text + " " + last;
}

std::string ownFolderText(const AmbrelCore& core) {
  return core.files() ? pathText(core.files()->ownFolder()) : std::string();
}

}  // namespace kelvane::ambrel
