#include "station_log/log_export.h"
#include "station_log/log_table.h"
#include "tests/fakes/fixed_calendar.h"
#include "tests/fuzz/fuzz_target.h"

// The station log: no line is lost, and what is written is read back the same.
FUZZ_TARGET(station_log) {
  using namespace kelvane;
  LogRejects rejects;
  LogTable log(std::string(input), rejects);
  const std::string text = log.content();
  LogRejects none;
  LogTable again(text, none);
  fuzz::promise(none.count == 0 && again.size() == log.size(), "a written record is none");
  fuzz::promise(again.content() == text, "it is written in another way the second time");
  const fakes::FixedCalendar calendar;
  adifOf(log, calendar);
  csvOf(log, calendar);
  for (int field = 0; field < kLogFields; ++field) again.setOrder(again.sorted(field));
  if (again.size() == 0) return;
  again.set(0, LogComments, input.substr(0, 100));
  const auto removed = again.remove(again.size() - 1);
  again.restore(removed);
  fuzz::promise(again.size() == log.size(), "a record was lost");
}
