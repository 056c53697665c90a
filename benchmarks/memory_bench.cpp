// Whether a panel that runs on and on grows: eight simulated receivers, each with 50 changes a
// second, for an hour of a clock that is turned by hand.
#include <malloc.h>

#include "benchmarks/table.h"
#include "panel/noted_events.h"
#include "tests/fakes/panel_rig.h"

namespace kelvane::bench {
namespace {

constexpr milliseconds kBetweenChanges{20};
constexpr int kChangesPerMinute = 60'000 / 20;

double megabytesInUse() {
  const auto heap = mallinfo2();
  return static_cast<double>(heap.uordblks + heap.hblkhd) / (1 << 20);
}

std::string eightReceivers() {
  std::string text;
  for (int i = 0; i < kMostReceivers; ++i) text += "[Receiver]\r\n";
  return text;
}

/// Counts what reaches the panel, so that the figure is one of a panel that had something to do.
class CountedEvents : public ReceiverListener {
 public:
#define EVENT(name, params, args) \
  void name params override { ++count; }
#include "contract/sondrel_events.inc"
#undef EVENT

  long count = 0;
};

class Shack {
 public:
  Shack() : rig_(eightReceivers()) {
    rig_.start();
    // The rig's own listener writes every event down.
    rig_.sondrel.core.removeListener(rig_.sondrel.listener);
    rig_.sondrel.listener.clear();
    rig_.sondrel.core.addListener(noted_);
  }
  ~Shack() {
    rig_.sondrel.core.removeListener(noted_);
    rig_.sondrel.core.addListener(rig_.sondrel.listener);
  }

  void runMinute() {
    for (int i = 0; i < kChangesPerMinute; ++i) {
      for (Index rx = 0; rx < kMostReceivers; ++rx)
        rig_.sondrel.core.SetRxFrequency(rx, false, 5'000'000 + 1000 * rx + (++turns_ % 900'000));
      rig_.run(kBetweenChanges);
    }
    must(events_.count > minutes_ * 8 * kChangesPerMinute, "the receivers' events came");
    ++minutes_;
  }

 private:
  fakes::PanelRig rig_;
  LinkHistory history_;
  CountedEvents events_;
  NotedEvents noted_{history_, events_, [] { return WallTime{0}; }};
  long turns_ = 0, minutes_ = 0;
};

void run() {
  Shack shack;
  shack.runMinute();
  const double afterMinute = megabytesInUse();
  for (int minute = 1; minute < 60; ++minute) shack.runMinute();
  print({"memory after an hour, 8 receivers at 50 events/s", megabytesInUse(), "MB",
         "after a minute", afterMinute, 1.01});
}

}  // namespace
}  // namespace kelvane::bench

int main() { return kelvane::bench::measure(kelvane::bench::run); }
