#include <map>

#include "components/ambrel/bands/band_plan.h"
#include "components/ambrel/schedule/codes.h"
#include "components/ambrel/schedule/day_rule.h"
#include "tests/fuzz/fuzz_target.h"

// The band plan, the words behind codes, and the rules of days.
FUZZ_TARGET(small_texts) {
  using namespace kelvane;
  using namespace kelvane::ambrel;
  const BandPlanReading reading = readBandPlan(input);
  fuzz::promise(reading.plan.has_value() == reading.problems.empty(), "a plan with problems");
  for (std::size_t place = 1; reading.plan && place < reading.plan->size(); ++place)
    fuzz::promise((*reading.plan)[place - 1].end == (*reading.plan)[place].start, "a gap");
  const Codes codes(input);
  codes.languages(input.substr(0, 30));
  codes.target(input.substr(0, 10));
  codes.site(input.substr(0, 20), input.substr(0, 3));
  const auto rule = readDays(input.substr(0, input.find('\n')));
  if (!rule) return;
  for (const Day day : {0, 19'999, 20'414}) rule->allows(DayFacts(day));
}
