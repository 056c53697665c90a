#include <windows.h>

#include <algorithm>

#include "benchmarks/latencies.h"
#include "benchmarks/wine/timing_copy.h"
#include "tests/wine/digit_server.h"

// The real program with the timing component beside it, and a real server of digits: how soon a
// digit tunes, and how long the window is silent while the server hangs.

namespace {

using namespace kelvane;
using namespace kelvane::bench;

constexpr int kTimes = 500;
constexpr double kFrame = 16'000;  ///< us
constexpr DWORD kHang = 10'000;    ///< ms

class DdePanel {
 public:
  DdePanel() { must(panel_.settledOn(0), "the program showing its first receiver"); }
  ~DdePanel() {
    panel_.close();
    panel_.ended();
  }

  void digits();
  void hang();

 private:
  /// The instance with its links switched on, before the program starts.
  struct Linked : wine::Instance {
    Linked() : wine::Instance(L"BenchDigits") { write(L"DDELink", -1); }
  };

  SharedTiming timing_;
  Linked instance_;
  TimingCopy copy_;
  wine::RunningPanel panel_{instance_.name(), copy_.folder()};
  wine::DigitServer server_{L"Kelvane_Timing 1"};
};

void DdePanel::digits() {
  // The link comes with the next look for servers.
  for (int tries = 0; timing_->frequenciesSet == 0; ++tries) {
    must(tries < 50, "a digit that tunes");
    server_.say("=#|100");
    Sleep(200);
  }
  Sleep(500);
  Latencies times;
  for (int i = 0; i < kTimes; ++i) {
    const LONG before = timing_->frequenciesSet;
    const LONG64 told = counter();
    server_.say(i % 2 ? "=#|100" : "=*|100");
    waitFor(timing_->frequenciesSet, before + 1, "a digit that tunes");
    times.add(microseconds(timing_->frequencySetAt - told));
    Sleep(5 + i % 20);
  }
  times.printRows("digit told to its server to SetRxFrequency", "us", "a frame", kFrame);
}

void DdePanel::hang() {
  server_.say("=5|100");
  server_.say("hang " + std::to_string(kHang / 1000));
  double longest = 0;
  for (const DWORD start = GetTickCount(); GetTickCount() - start < kHang; Sleep(4)) {
    DWORD_PTR result = 0;
    const LONG64 asked = counter();
    must(SendMessageTimeoutW(panel_.window(), WM_NULL, 0, 0, SMTO_NORMAL, 5000, &result) != 0,
         "an answer of the window");
    longest = std::max(longest, microseconds(counter() - asked));
  }
  print({"window's longest silence while a DDE server hangs", longest / 1000, "ms",
         "the most it should be", 50, 1});
}

}  // namespace

int main() {
  return measure([] {
    DdePanel panel;
    panel.digits();
    panel.hang();
  });
}
