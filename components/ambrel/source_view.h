#pragma once

#include <cstddef>
#include <filesystem>
#include <string>
#include <vector>

#include "components/ambrel/ambrel_core.h"

namespace kelvane::ambrel {

/// What the window for the source of the database shows of one list.
struct SourceRow {
  std::string kind;      ///< "Schedule", "Known frequencies", "Band plan R1"
  std::string name;      ///< file name, for a schedule as the user knows it
  std::string path;      ///< where it is read from
  std::string owner;     ///< "shipped", "own"
  std::string contents;  ///< "12656 broadcasts", "3 sets, 57 frequencies"
  std::string age;       ///< of a schedule
  std::string problems;  ///< empty when there are none; a list not used says why

  bool operator==(const SourceRow&) const = default;
};

/// The lists and band plans that the database is made of, schedules first, those not used included.
std::vector<SourceRow> sourceRows(AmbrelCore& core);

/// Everything about one of them, a line for each fact.
std::string sourceDetails(const SourceRow& row);

/// "13528 stations on 3201 frequencies in 17 sets", whether a schedule is missing, then what the
/// last load said, or that one is under way.
std::string sourceStatus(const AmbrelCore& core);

/// The folder in which the user's own texts belong, as text.
std::string ownFolderText(const AmbrelCore& core);

}  // namespace kelvane::ambrel
