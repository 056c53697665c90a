#include "components/ambrel/schedule/air_clock.h"
#include "components/ambrel/schedule/eibi_schedule.h"
#include "components/ambrel/schedule/season.h"
#include "components/ambrel/stations/station_table.h"
#include "tests/fuzz/fuzz_target.h"

// Broadcast schedules, and who is on the air by them.
FUZZ_TARGET(schedule) {
  using namespace kelvane;
  using namespace kelvane::ambrel;
  const Season season =
      seasonOfLastHeard(input).value_or(seasonOfFileName(input.substr(0, 20)).value_or(Season{}));
  ScheduleReading reading = readEibiSchedule(input, season);
  StationList list;
  list.form = StationList::Form::Eibi;
  list.sets = {"EiBi"};
  list.text = input;
  list.season = season;
  list.records = std::move(reading.records);
  list.rules = std::move(reading.rules);
  for (const ListedRecord& listed : list.records) {
    fuzz::promise(listed.source.line < input.size(), "a line lies behind the text");
    scheduleLineAt(list.text, listed.source.line);
  }
  std::vector<StationList> lists;
  lists.push_back(std::move(list));
  const StationTable table(std::move(lists));
  for (const UtcMinute minute : {season.start(), season.start() + 12'345, season.end() - 1}) {
    const AirTime time(table, minute);
    for (const Record& record : table.records()) time.onAir(record);
  }
}
