#include <windows.h>

#include "benchmarks/table.h"
#include "benchmarks/wine/process_accounts.h"
#include "benchmarks/wine/timing_copy.h"
#include "tests/wine/instance.h"
#include "tests/wine/running_panel.h"

// Five minutes of the real program with eight receivers at 50 meter events a second each, one after
// the other shown: what it keeps of them in memory.

namespace {

using namespace kelvane;
using namespace kelvane::bench;

constexpr LONG kMeterRate = 50;
constexpr int kReceivers = 8;
constexpr ULONGLONG kMinute = 60'000;
constexpr int kMinutes = 5;

void run() {
  SharedTiming timing;
  const wine::Instance instance(L"BenchSoak");
  const TimingCopy copy;
  wine::RunningPanel panel(instance.name(), copy.folder());
  must(panel.settledOn(0), "the program showing the timing component's first receiver");
  const auto accounts = ProcessAccounts::ofCommand("Kelvane.exe", "BenchSoak");
  timing->metersAtOnce = kReceivers;
  timing->meterRate = kMeterRate;
  SetEvent(timing.request());
  const ULONGLONG start = GetTickCount64();
  const auto runUntil = [&](ULONGLONG minutes) {
    for (int tab = 0; GetTickCount64() - start < minutes * kMinute; Sleep(1000))
      panel.clickTab(tab++ % kReceivers);
  };
  runUntil(1);
  const auto early = accounts.memory();
  runUntil(kMinutes);
  const auto late = accounts.memory();
  must(timing->meterEvents > 0.9 * kMeterRate * kReceivers * 60 * kMinutes, "events at their rate");
  timing->meterRate = 0;
  // Pages of files count or not as other programs that map them come and go.
  print({"memory made after five minutes, 8 receivers at 50 events/s", late.made, "MB",
         "after a minute", early.made, 1.01});
  panel.close();
  panel.ended();
}

}  // namespace

int main() { return measure(run); }
