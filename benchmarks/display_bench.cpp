// Who has the display: an operator at work at one of eight simulated receivers, whose links come up
// together and one of which flaps, for ten minutes of a clock that is turned by hand.
#include "benchmarks/table.h"
#include "tests/fakes/panel_rig.h"
#include "ui/key_codes.h"

namespace kelvane::bench {
namespace {

constexpr Index kHis = 3, kFlapping = 5;
constexpr int kSeconds = 600;

/// Links that come up after one attempt to three.
std::string eightReceivers() {
  std::string text;
  for (int rx = 0; rx < kMostReceivers; ++rx)
    text += "[Receiver]\r\nFault=1006\r\nFaultHeals=" + std::to_string(1 + rx % 3) + "\r\n";
  return text;
}

struct Seen {
  int moved = 0;  ///< changes of the display that no hand made
  int flaps = 0;
};

/// Ten minutes, in which he steps the frequency every second.
Seen watch() {
  fakes::PanelRig rig(eightReceivers());
  rig.start(milliseconds(0));
  rig.panel->tabClicked(kHis);
  sondrel::SimulatedFaults flap;
  flap.code = 1006;
  flap.healsAfter = 2;
  Seen seen;
  int shown = rig.view().TabStrip.selected;
  bool up = false;
  for (int second = 0; second < kSeconds; ++second) {
    rig.press(second % 2 ? key::Left : key::Right);
    if (second % 5 == 4) rig.sondrel.core.setFaults(kFlapping, flap);
    for (int look = 0; look < 10; ++look) {
      rig.run(milliseconds(100));
      if (std::exchange(shown, rig.view().TabStrip.selected) != shown) ++seen.moved;
      if (!std::exchange(up, rig.sondrel.core.IsRxOnline(kFlapping)) && up) ++seen.flaps;
    }
  }
  return seen;
}

void run() {
  const Seen seen = watch();
  must(seen.flaps > kSeconds / 10, "links that came up");
  print({"eight links come up, one flaps every 5 s: changes of the display while he works",
         static_cast<double>(seen.moved), "", "links that came up meanwhile",
         static_cast<double>(seen.flaps), 0.0001});
}

}  // namespace
}  // namespace kelvane::bench

int main() { return kelvane::bench::measure(kelvane::bench::run); }
