#include "components/ambrel/stations/known_sets.h"

#include <algorithm>

#include "components/ambrel/stations/station_table.h"
#include "tests/fuzz/fuzz_target.h"

// Texts of known frequencies, and the table that is made of them.
FUZZ_TARGET(known_sets) {
  using namespace kelvane;
  using namespace kelvane::ambrel;
  std::vector<StationList> lists;
  for (const std::size_t half : {input.size() / 2, input.size()})
    lists.push_back(readKnownSets(std::string(input.substr(0, half)), "own"));
  std::size_t records = 0;
  for (const StationList& list : lists) {
    records += list.records.size();
    for (const ListedRecord& listed : list.records) {
      fuzz::promise(!knownLineAt(list.text, listed.source.line).name.empty(), "a name is lost");
      fuzz::promise(listed.record.set < list.sets.size(), "a record is in no set");
    }
  }
  const StationTable table(std::move(lists));
  fuzz::promise(table.records().size() == records, "the table has other records");
  for (std::size_t place = 1; place < table.size(); ++place)
    fuzz::promise(table.frequency(place - 1) < table.frequency(place), "it is out of order");
}
