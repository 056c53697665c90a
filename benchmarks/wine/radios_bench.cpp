#include <winsock2.h>

#include <windows.h>

#include <memory>
#include <string>
#include <vector>

#include "benchmarks/latencies.h"
#include "benchmarks/wine/process_accounts.h"
#include "benchmarks/wine/slow_radio.h"
#include "benchmarks/wine/timing_board.h"
#include "tests/wine/instance.h"
#include "tests/wine/real_rigctld.h"
#include "tests/wine/running_panel.h"
#include "ui/control_ids.h"

// The real program on real radio servers: what eight of them cost, how soon the window answers
// meanwhile, and how soon a lost link stands on the panel in words.

namespace {

using namespace kelvane;
using namespace kelvane::bench;

constexpr int kRadios = 8;
constexpr double kFrame = 16'000;  ///< us

std::string section(int port) {
  return "[Receiver]\r\nKind=rigctld\r\nPort=" + std::to_string(port) + "\r\n";
}

void printLoad(const ProcessAccounts& panel) {
  constexpr int kSeconds = 10;
  const LONG64 start = counter();
  const double before = panel.seconds();
  Sleep(kSeconds * 1000);
  const double share = 100 * (panel.seconds() - before) / (microseconds(counter() - start) / 1e6);
  print({"program with eight rigctld", share, "% of a core", "the most it should be", 10, 1});
}

void printAnswers(const wine::RunningPanel& panel) {
  Latencies times;
  const ULONGLONG end = GetTickCount64() + 20'000;
  while (GetTickCount64() < end) {
    DWORD_PTR result = 0;
    const LONG64 asked = counter();
    must(SendMessageTimeoutW(panel.window(), WM_NULL, 0, 0, SMTO_NORMAL, 5000, &result) != 0,
         "an answer of the window");
    times.add(microseconds(counter() - asked));
    Sleep(4);
  }
  times.printRows("window's answer with eight rigctld", "us", "a frame", kFrame);
}

void measureEight() {
  std::vector<std::unique_ptr<wine::RealRigctld>> servers;
  std::string receivers = "Version=1\r\n";
  for (int i = 0; i < kRadios; ++i) {
    const int port = wine::freePort();
    servers.push_back(std::make_unique<wine::RealRigctld>(port));
    must(servers.back()->start(), "a radio server");
    receivers += section(port);
  }
  const wine::Instance instance(L"BenchRadios");
  instance.writeReceivers(receivers);
  wine::RunningPanel panel(instance.name());
  must(panel.shown() && wine::eventually([&] { return panel.tabs() == kRadios; }), "eight tabs");
  for (int tab = kRadios - 1; tab >= 0; --tab) {
    panel.clickTab(tab);
    must(panel.settledOn(tab), "a link that is up");
  }
  Sleep(3000);
  printLoad(ProcessAccounts::ofCommand("Kelvane.exe", "BenchRadios"));
  printAnswers(panel);
  panel.close();
  panel.ended();
}

void measureLosses() {
  SlowRadio radio(1);
  const wine::Instance instance(L"BenchLosses");
  instance.writeReceivers("Version=1\r\n" + section(radio.port()));
  wine::RunningPanel panel(instance.name());
  Latencies times;
  for (int i = 0; i < 10; ++i) {
    must(panel.settledOn(0), "a link that is up");
    Sleep(1000);
    const LONG64 start = counter();
    radio.hangUp();
    const ULONGLONG end = GetTickCount64() + 5000;
    while (!panel.visible(id::RxMask) || panel.text(id::RxMask).empty())
      must(GetTickCount64() < end, "words for a lost link");
    times.add(microseconds(counter() - start) / 1000);
  }
  print({"link closed to words on the panel, worst of 10", times.worst(), "ms",
         "the most it should be", 1000, 1});
  panel.close();
  panel.ended();
}

}  // namespace

int main() {
  return measure([] {
    measureEight();
    measureLosses();
  });
}
