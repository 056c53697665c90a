#pragma once

#include <cstddef>
#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "components/ambrel/line_problems.h"
#include "components/ambrel/lists/own_file.h"
#include "components/ambrel/record.h"

namespace kelvane::ambrel {

struct HfccNames;

/// One list of stations: a text of known frequencies in named sets, a schedule, or the operator's
/// own list.
struct StationList {
  enum class Form { Known, Eibi, Own, Hfcc };

  Form form = Form::Known;
  std::filesystem::path file;         ///< where it was read from
  bool usersOwn = false;              ///< not one of the shipped texts
  std::string text;                   ///< the records' words; they are read when asked for
  std::vector<std::string> sets;      ///< names of its sets; a record's `set` is a place in here
  std::vector<ListedRecord> records;  ///< until a table takes them over
  std::size_t count = 0;              ///< number of records
  lists::Headings headings = {};      ///< of the operator's own list: its columns
  std::vector<FurtherRule> rules;
  std::shared_ptr<const HfccNames> hfcc = {};  ///< of an HFCC schedule: what its codes mean
  std::optional<Season> season;                ///< of a schedule
  std::string origin;                          ///< a schedule's own file name, as the user knows it
  std::size_t inactive = 0;                    ///< lines left out because they do not transmit
  std::size_t unknownDays = 0;

  bool isSchedule() const { return form == Form::Eibi || form == Form::Hfcc; }

  LineProblems problems;
  /// Why nothing of it is used, in words; empty when it is used.
  std::string refusal;
  bool unreadable = false;  ///< it could not be read, which says nothing about what it holds
};

}  // namespace kelvane::ambrel
