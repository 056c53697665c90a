#include "components/ambrel/source_view.h"

#include "base/safe_file.h"
#include "components/ambrel/schedule_store.h"

namespace kelvane::ambrel {

namespace {

std::string contentsOf(const StationList& list) {
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
  const bool schedule = list.form == StationList::Form::Eibi;
  SourceRow row;
  row.kind = schedule ? "Schedule" : "Known frequencies";
  row.name = schedule ? list.origin : pathText(list.file.filename());
  row.path = pathText(list.file);
  row.owner = list.usersOwn ? "own" : "shipped";
  if (list.refusal.empty()) row.contents = contentsOf(list);
  if (list.season) row.age = ageText(*list.season, now);
  row.problems = problemsOf(list);
  return row;
}

}  // namespace

std::vector<SourceRow> sourceRows(AmbrelCore& core) {
  std::vector<SourceRow> rows;
  const UtcMinute now = core.airTime().minute();
  for (const StationList& list : core.data().table->lists()) rows.push_back(rowOf(list, now));
  for (const StationList& list : core.data().refused) rows.push_back(rowOf(list, now));
  return rows;
}

std::string sourceStatus(const AmbrelCore& core) {
  const StationTable& table = *core.data().table;
  std::string text = std::to_string(table.records().size()) + " stations on " +
                     std::to_string(table.size()) + " frequencies in " +
                     std::to_string(table.sets().size()) + " sets.";
  const std::string& last = core.isLoading() ? "Loading..." : core.loadWords();
  return last.empty() ? text : text + " " + last;
}

std::string ownFolderText(const AmbrelCore& core) {
  return core.files() ? pathText(core.files()->ownFolder()) : std::string();
}

}  // namespace kelvane::ambrel
