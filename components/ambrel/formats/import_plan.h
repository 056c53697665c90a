#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "components/ambrel/formats/list_format.h"
#include "components/ambrel/lists/own_list.h"

namespace kelvane::formats {

/// What becomes of a station that is in the list already, with its frequency and name.
enum class Rule {
  Merge,    ///< what the file says replaces what the list says; what it leaves open stays
  Replace,  ///< the file's entry takes the place of the list's
  Skip      ///< the list's entry stays as it is
};

enum class Act { Add, Change, Leave };

/// What is to be done with one line of the file, and why.
struct PlanRow {
  Act act = Act::Leave;
  std::size_t place = 0;      ///< line of the file, or the entry's number in it
  lists::EntryPtr entry;      ///< as it is to be in the list; none for a line that is no station
  lists::OwnList::Id id = 0;  ///< of the entry that is changed
  std::string why;
};

/// What an import is going to do, line by line in the file's order.
struct ImportPlan {
  std::vector<PlanRow> rows;
  std::size_t adds = 0, changes = 0, leaves = 0;

  /// "Adds 12, changes 3, leaves out 1."
  std::string words() const;
  /// The plan as one edit of a list whose numbers end at `end`.
  lists::OwnList::Edits edits(lists::OwnList::Id end) const;
};

/// Plans to take a reading into a list; `own` has its entries by their numbers, some of them none.
ImportPlan planImport(const Reading& reading, const lists::Entries& own, Rule rule);

}  // namespace kelvane::formats
