#include <cmath>

#include "base/net_filter.h"
#include "base/program_line.h"
#include "base/text.h"
#include "components/ambrel/geo.h"
#include "frequency/dtmf_digits.h"
#include "panel/command_line.h"
#include "tests/fakes/sondrel_rig.h"
#include "tests/fuzz/fuzz_target.h"

namespace {

using namespace kelvane;

fakes::SondrelRig& receivers() {
  static fakes::SondrelRig rig;
  static const Count count = rig.open();
  fuzz::promise(count > 0, "there are no receivers");
  // Nobody is to remember what millions of inputs bring about.
  rig.core.removeListener(rig.listener);
  return rig;
}

}  // namespace

// What other programs and the operator hand over as a line: keys of a tone decoder, the words after
// the program's name, the line that starts a server, who may use a receiver, where the aerials are.
FUZZ_TARGET(digits_and_words) {
  const CommandLine line = parseCommandLine(input);
  fuzz::promise(line.action == CommandLine::Action::Usage || !line.instance.empty(), "no instance");
  const Result<std::string> program = programOf(input);
  fuzz::promise(program || !program.reason().empty(), "no program without a reason");
  isNetList(input);
  isInNetList(*numericAddress("192.168.1.7", 0), input);
  if (const auto place = ambrel::readPlace(input))
    fuzz::promise(std::abs(place->latitude) <= 90 && std::abs(place->longitude) <= 180,
                  "a place off the earth");
  DtmfDigits digits(receivers().core);
  for (const std::string_view text : split(input, '\n')) {
    digits.Digits_Change(static_cast<Index>(text.size() % 6) - 1, text);
    fuzz::promise(digits.DtmfBuffer(0).size() <= 16, "an entry grows");
  }
  receivers().pump();
}
