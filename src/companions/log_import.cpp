#include "companions/log_import.h"

#include <algorithm>
#include <array>

namespace kelvane {

namespace {

/// At most so many names of fields that are not taken over are told.
constexpr std::size_t kNamesTold = 12;

std::string namesText(const std::vector<std::string>& names) {
  std::string text;
  for (std::size_t i = 0; i < std::min(names.size(), kNamesTold); ++i)
    text += (i > 0 ? ", " : "") + names[i];
  if (names.size() > kNamesTold)
    text += " and " + std::to_string(names.size() - kNamesTold) + " others";
  return text;
}

}  // namespace

std::vector<GridColumn> LogImport::columns() {
  const auto shown = [](const char* caption, int width, bool right = false) {
    return GridColumn{caption, width, right, false, false, true, {}};
  };
  return {shown("Line", 50, true), shown("What", 66),     shown("Frequency", 84, true),
          shown("Mode", 60),       shown("Date", 84),     shown("Time", 66),
          shown("Comments", 170),  shown("Receiver", 70), shown("Why", 330)};
}

std::string LogImport::words() const {
  if (!reading_.refusal.empty()) return "Nothing can be taken in. " + reading_.refusal;
  const std::size_t leaves = plan_.rows.size() - plan_.adds;
  std::string words = reading_.form + ": " + std::to_string(reading_.taken.size()) +
                      " reports understood. Adds " + std::to_string(plan_.adds) + ", leaves out " +
                      std::to_string(leaves) + ".";
  if (!reading_.unused.empty())
    words += " The log has no column for " + namesText(reading_.unused) + ".";
  return words;
}

std::vector<LogRecord> LogImport::records() const {
  std::vector<LogRecord> records;
  for (const LogPlanRow& row : plan_.rows)
    if (row.adds) records.push_back(row.taken->record);
  return records;
}

std::string LogImport::cell(GridRow row, int column) const {
  if (row >= plan_.rows.size()) return {};
  const LogPlanRow& planned = plan_.rows[row];
  constexpr std::array kFields{LogFrequency, LogMode, LogDate, LogTime, LogComments, LogReceiver};
  if (column == 0) return std::to_string(planned.place);
  if (column == 1) return planned.adds ? "Add" : "Leave out";
  if (column == 8) return planned.why;
  if (!planned.taken) return {};
  return planned.taken
      ->record[static_cast<std::size_t>(kFields[static_cast<std::size_t>(column) - 2])];
}

}  // namespace kelvane
