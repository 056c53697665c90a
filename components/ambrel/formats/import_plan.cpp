#include "components/ambrel/formats/import_plan.h"

#include <algorithm>
#include <functional>
#include <memory>
#include <unordered_map>
#include <unordered_set>
#include <utility>

#include "base/text.h"

namespace kelvane::formats {

namespace {

using lists::EntryPtr;
using lists::OwnList;

std::string keyOf(const Entry& entry) {
  return std::to_string(entry.frequency) + ' ' + upper(entry.name);
}

/// The list's entry with all that the other one says.
Entry mergedEntry(Entry entry, const Entry& more) {
  const auto take = [](std::string& text, const std::string& other) {
    if (!other.empty()) text = other;
  };
  if (more.mode >= 0) entry.mode = more.mode;
  if (more.width > 0) entry.width = more.width;
  take(entry.group, more.group);
  take(entry.tags, more.tags);
  if (more.from >= 0) {
    entry.from = more.from;
    entry.to = more.to;
  }
  take(entry.days, more.days);
  entry.favourite = entry.favourite || more.favourite;
  entry.skip = entry.skip || more.skip;
  take(entry.note, more.note);
  for (const auto& each : more.further) {
    const auto there =
        std::ranges::find(entry.further, each.first, [](const auto& pair) { return pair.first; });
    if (there == entry.further.end())
      entry.further.push_back(each);
    else
      there->second = each.second;
  }
  return entry;
}

/// What of the list's entry is another in the new one: "width, tags".
std::string changedParts(const Entry& old, const Entry& now) {
  std::string parts;
  const auto part = [&parts](bool changed, const char* name) {
    if (changed) parts += (parts.empty() ? "" : ", ") + std::string(name);
  };
  part(old.name != now.name, "name");
  part(old.mode != now.mode, "mode");
  part(old.width != now.width, "width");
  part(old.group != now.group, "group");
  part(old.tags != now.tags, "tags");
  part(old.from != now.from || old.to != now.to, "times");
  part(old.days != now.days, "days");
  part(old.favourite != now.favourite, "favourite");
  part(old.skip != now.skip, "skip");
  part(old.note != now.note, "note");
  part(old.further != now.further, "further columns");
  return parts;
}

/// Tells entries from each other by all that they say.
struct WholeEntry {
  bool operator()(const Entry* a, const Entry* b) const { return *a == *b; }
  std::size_t operator()(const Entry* entry) const {
    std::string all = keyOf(*entry);
    for (const int number : {entry->mode, entry->width, Setting{entry->from}, Setting{entry->to}})
      all += '\n' + std::to_string(number);
    for (const auto& text : {entry->group, entry->tags, entry->days, entry->note})
      (all += '\n') += text;
    for (const auto& [name, value] : entry->further) (all += '\n') += value;
    return std::hash<std::string>()(all);
  }
};

/// Plans one station after the other.
class Planner {
 public:
  Planner(const lists::Entries& own, Rule rule) : own_(own), rule_(rule) {
    for (OwnList::Id id = 0; id < own.size(); ++id) {
      if (own[id] && !here_.emplace(keyOf(*own[id]), id).second) doubles_.insert(own[id].get());
    }
  }

  PlanRow plan(const Taken& taken) {
    const auto entry = std::make_shared<Entry>(taken.entry);
    PlanRow row{Act::Add, taken.place, entry, 0, taken.remark};
    const auto [before, isNew] = inFile_.emplace(keyOf(*entry), &taken.entry);
    // A station that stands twice in the file comes twice into the list, unless it is the same.
    if (!isNew && *before->second == *entry) return leave(row, "it stands in the file twice");
    if (isHere(*entry)) return leave(row, "it is in the list just so");
    if (!isNew) {
      // A number may be part of another one's name in the file.
      int& number = numbers_[before->first];
      do {
        entry->name = taken.entry.name + " (" + std::to_string(++number + 1) + ")";
      } while (!inFile_.emplace(keyOf(*entry), &taken.entry).second);
      note(row, "its name stands in the file twice, and gets a number");
    }
    const auto there = here_.find(keyOf(*entry));
    if (there == here_.end()) return row;
    row.id = there->second;
    const Entry& old = *own_[row.id];
    if (rule_ == Rule::Skip) return leave(row, "it is in the list already");
    if (rule_ == Rule::Merge) row.entry = std::make_shared<Entry>(mergedEntry(old, *entry));
    if (*row.entry == old) return leave(row, "it is in the list just so");
    note(row, "changes " + changedParts(old, *row.entry));
    row.act = Act::Change;
    return row;
  }

 private:
  /// A station of several times is in the list several times; the first is not the only one.
  bool isHere(const Entry& entry) const {
    if (doubles_.contains(&entry)) return true;
    const auto first = here_.find(keyOf(entry));
    return first != here_.end() && *own_[first->second] == entry;
  }
  static void note(PlanRow& row, const std::string& why) {
    row.why += (row.why.empty() ? "" : "; ") + why;
  }
  static PlanRow leave(PlanRow& row, const char* why) {
    row.act = Act::Leave;
    note(row, why);
    return std::move(row);
  }

  const lists::Entries& own_;
  Rule rule_;
  std::unordered_map<std::string, OwnList::Id> here_;  ///< the first with frequency and name
  std::unordered_set<const Entry*, WholeEntry, WholeEntry> doubles_;  ///< the others with them
  std::unordered_map<std::string, const Entry*> inFile_;
  std::unordered_map<std::string, int> numbers_;
};

}  // namespace

std::string ImportPlan::words() const {
  return "Adds " + std::to_string(adds) + ", changes " + std::to_string(changes) + ", leaves out " +
         std::to_string(leaves) + ".";
}

OwnList::Edits ImportPlan::edits(OwnList::Id end) const {
  OwnList::Edits edits;
  for (const PlanRow& row : rows) {
    if (row.act == Act::Add) edits.emplace_back(end++, row.entry);
    if (row.act == Act::Change) edits.emplace_back(row.id, row.entry);
  }
  return edits;
}

ImportPlan planImport(const Reading& reading, const lists::Entries& own, Rule rule) {
  ImportPlan plan;
  Planner planner(own, rule);
  plan.rows.reserve(reading.taken.size() + reading.leftOut.size());
  for (const Taken& taken : reading.taken) plan.rows.push_back(planner.plan(taken));
  for (const LeftOut& left : reading.leftOut)
    plan.rows.push_back({Act::Leave, left.place, nullptr, 0, left.reason});
  std::ranges::stable_sort(plan.rows, {}, &PlanRow::place);
  for (const PlanRow& row : plan.rows)
    ++(row.act == Act::Add ? plan.adds : row.act == Act::Change ? plan.changes : plan.leaves);
  return plan;
}

}  // namespace kelvane::formats
