#include <algorithm>

#include "station_log/log_import.h"
#include "tests/fakes/fixed_calendar.h"
#include "tests/fuzz/fuzz_target.h"

// Logs of other programs, and what an import would do with them.
FUZZ_TARGET(foreign_logs) {
  using namespace kelvane;
  const fakes::FixedCalendar calendar;
  const LogReading reading = readForeignLog(input, calendar, LogTimes::Utc);
  fuzz::promise(!reading.refusal.empty() || !reading.taken.empty(), "neither reports nor a reason");
  LogTable log;
  const LogPlan plan = planLogImport(reading, log);
  fuzz::promise(plan.rows.size() == reading.taken.size() + reading.leftOut.size(),
                "a line is lost");
  const auto isThere = [](const LogPlanRow& row) { return row.why == "it is in the log already"; };
  fuzz::promise(std::ranges::none_of(plan.rows, isThere), "an empty log has it already");
  fuzz::promise(plan.adds > 0 || reading.taken.empty(), "all reports are doubles");
  for (const LogTaken& taken : reading.taken) log.append(taken.record);
  LogRejects rejects;
  const LogTable again(log.content(), rejects);
  fuzz::promise(rejects.count == 0 && again.size() == log.size(), "the log's file loses a report");
}
