#include <windows.h>

#include <set>
#include <string>

#include "benchmarks/latencies.h"
#include "benchmarks/wine/process_accounts.h"
#include "benchmarks/wine/timing_copy.h"
#include "tests/wine/instance.h"
#include "tests/wine/running_panel.h"
#include "ui/control_ids.h"

// The real program with the timing component beside it: from a key to the component, from the
// component to the digits on the screen, and what a flood of meter events costs.

namespace {

using namespace kelvane;
using namespace kelvane::bench;

constexpr int kTimes = 1000;
constexpr double kFrame = 16'000;  ///< us
constexpr LONG kMeterRate = 50;
constexpr int kReceivers = 8;

class TimedPanel {
 public:
  TimedPanel() {
    must(panel_.settledOn(0), "the program showing the timing component's first receiver");
    Sleep(3000);  // the other links come up
    accounts_ = ProcessAccounts::ofCommand("Kelvane.exe", "BenchTiming");
  }
  ~TimedPanel() {
    panel_.close();
    panel_.ended();
  }

  void keys();
  void arrows();
  void digits();
  void meters();

 private:
  std::string text(int control) const { return panel_.text(control); }
  Latencies keyTimes(WORD one, WORD other);
  void load(const char* what);
  void answers();

  SharedTiming timing_;
  wine::Instance instance_{L"BenchTiming"};
  TimingCopy copy_;
  wine::RunningPanel panel_{instance_.name(), copy_.folder()};
  ProcessAccounts accounts_{0};
};

/// From a key going down to the component, two keys turn about.
Latencies TimedPanel::keyTimes(WORD one, WORD other) {
  Latencies times;
  for (int i = 0; i < kTimes; ++i) {
    const LONG before = timing_->frequenciesSet;
    const LONG64 pressed = counter();
    panel_.key(i % 2 ? other : one);
    waitFor(timing_->frequenciesSet, before + 1, "a key that sets a frequency");
    times.add(microseconds(timing_->frequencySetAt - pressed));
    Sleep(5 + i % 20);
  }
  return times;
}

void TimedPanel::keys() {
  panel_.click(id::FrqDigit + 5);
  keyTimes(VK_UP, VK_DOWN).printRows("digit key to SetRxFrequency", "us", "a frame", kFrame);
  panel_.key(VK_ESCAPE);
}

void TimedPanel::arrows() {
  panel_.click(id::Band);
  keyTimes(VK_LEFT, VK_RIGHT).printRows("arrow step to SetRxFrequency", "us", "a frame", kFrame);
}

void TimedPanel::digits() {
  Latencies times;
  for (int i = 0; i < kTimes; ++i) {
    const int last = (i + 1) % 10;
    timing_->wanted = 7'050'000 + last;
    SetEvent(timing_.request());
    const std::string wanted = std::to_string(last);
    const ULONGLONG end = GetTickCount64() + 5000;
    while (text(id::FrqDigit + 8) != wanted)
      must(GetTickCount64() < end, "digits that follow an event");
    const LONG64 seen = counter();
    waitFor(timing_->raised, i + 1, "an event that was raised");
    times.add(microseconds(seen - timing_->raisedAt));
    Sleep(5 + i % 30);
  }
  times.printRows("component event to digits", "us", "a frame", kFrame);
}

void TimedPanel::meters() {
  timing_->metersAtOnce = kReceivers;
  timing_->meterRate = kMeterRate;
  SetEvent(timing_.request());
  Sleep(1000);
  load(" meter events a second, all receivers at once, ");
  // What comes by itself wakes the program by itself.
  timing_->metersAtOnce = 1;
  Sleep(1000);
  load(" meter events a second, one by one, ");
  answers();
  timing_->meterRate = 0;
}

/// Shares of one core, while nobody asks the panel anything.
void TimedPanel::load(const char* what) {
  constexpr int kSeconds = 10;
  const auto wineServer = ProcessAccounts::ofVariable(L"KELVANE_WINE_SERVER");
  const auto xServer = ProcessAccounts::ofVariable(L"KELVANE_X_SERVER");
  const LONG64 start = counter();
  const LONG events = timing_->meterEvents;
  const double panelStart = accounts_.seconds();
  const double wineStart = wineServer.seconds(), xStart = xServer.seconds();
  std::set<std::string> readings;
  for (int i = 0; i < kSeconds * 4; ++i) {
    Sleep(250);
    readings.insert(text(id::SM));
  }
  const double seconds = microseconds(counter() - start) / 1e6;
  const auto share = [seconds](double from, double to) { return 100 * (to - from) / seconds; };
  const double panelShare = share(panelStart, accounts_.seconds());
  const double wineShare = share(wineStart, wineServer.seconds());
  const double xShare = share(xStart, xServer.seconds());
  const double rate = (timing_->meterEvents - events) / seconds;
  must(readings.size() >= 10, "a meter label that follows the events");
  must(rate > 0.9 * kMeterRate * kReceivers, "events at their rate");
  const std::string name = shortNumber(rate) + what;
  print({name + "panel", panelShare, "% of a core", "the most it should be", 5, 1});
  print({name + "Wine server", wineShare, "% of a core"});
  print({name + "X server", xShare, "% of a core"});
}

/// How soon the window answers meanwhile.
void TimedPanel::answers() {
  Latencies times;
  const ULONGLONG end = GetTickCount64() + 20'000;
  while (GetTickCount64() < end) {
    DWORD_PTR result = 0;
    const LONG64 asked = counter();
    must(SendMessageTimeoutW(panel_.window(), WM_NULL, 0, 0, SMTO_NORMAL, 5000, &result) != 0,
         "an answer of the window");
    times.add(microseconds(counter() - asked));
    Sleep(4);
  }
  times.printRows("window's answer meanwhile", "us", "a frame", kFrame);
}

}  // namespace

int main() {
  return measure([] {
    TimedPanel panel;
    panel.keys();
    panel.arrows();
    panel.digits();
    panel.meters();
  });
}
