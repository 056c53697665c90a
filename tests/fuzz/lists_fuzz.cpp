#include "components/ambrel/formats/import_plan.h"
#include "components/ambrel/schedule/hfcc.h"
#include "components/ambrel/schedule/site_places.h"
#include "tests/fuzz/fuzz_target.h"

// Lists of other programs in all forms, and what an import would do with them; seasons and sites.
FUZZ_TARGET(lists) {
  using namespace kelvane;
  using namespace kelvane::formats;
  const Reading reading = readList(input);
  fuzz::promise(!reading.refusal.empty() || !reading.taken.empty(),
                "neither stations nor a reason");
  lists::Entries entries;
  for (const Taken& taken : reading.taken) {
    fuzz::promise(taken.entry.frequency > 0, "a station without a frequency");
    entries.push_back(std::make_shared<const Entry>(taken.entry));
  }
  for (const LeftOut& left : reading.leftOut)
    fuzz::promise(!left.reason.empty(), "left out without a reason");
  const ImportPlan plan = planImport(reading, entries, Rule::Merge);
  fuzz::promise(plan.rows.size() == reading.taken.size() + reading.leftOut.size(),
                "a line is lost");
  const lists::OwnText own = lists::readOwnText(writeList(entries, Format::Own).text);
  fuzz::promise(own.entries.size() == entries.size() && own.unread.empty(),
                "our own file loses a station");
  for (int format = 0; format < static_cast<int>(Format::Count); ++format)
    writeList(entries, static_cast<Format>(format));
  ambrel::readHfcc(input, "season.zip");
  const ambrel::SitePlaces places(input);
  places.at("a", "G");
}
