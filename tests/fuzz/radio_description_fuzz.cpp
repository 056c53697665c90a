#include "components/sondrel/rigctld/rigctld_description.h"

#include "base/text.h"
#include "components/sondrel/rigctld/rigctld_reply.h"
#include "tests/fuzz/fuzz_target.h"

// What a server says of its radio.
FUZZ_TARGET(radio_description) {
  using namespace kelvane;
  using namespace kelvane::sondrel;
  std::vector<std::string> lines;
  for (const std::string_view line : split(input, '\n')) lines.emplace_back(line);
  modelIn(lines);
  fuzz::promise(modesIn(lines).size() <= 64, "too many modes");
  for (const std::string& line : lines) {
    reportOf(line);
    wholeOf(valueOf(line));
  }
  const auto found = readDescription(lines);
  if (!found) return;
  for (const FrequencyRange& range : found->ranges)
    fuzz::promise(range.low >= 0 && range.low < range.high, "a range without an inside");
  fuzz::promise(found->lowestFrequency() <= found->highestFrequency(), "no frequency is left");
}
