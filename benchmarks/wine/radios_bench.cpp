#include <winsock2.h>

#include <windows.h>

#include <algorithm>
#include <memory>
#include <string>
#include <utility>
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
// meanwhile, and how soon a lost link stands on the panel in words. Then on radios whose every
// command takes a tenth of a second: how much of their lines it uses, how often the S-meter is read
// there, and how soon the operator's own command is on its way.

namespace {

using namespace kelvane;
using namespace kelvane::bench;

constexpr int kRadios = 8;
constexpr double kFrame = 16'000;  ///< us
constexpr DWORD kSlow = 100;       ///< ms that a slow radio takes for each command
constexpr double kShare = 60;      ///< % of a line that polling may use

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

/// What each radio's line carries while nobody tunes; the first one is shown.
void printLines(const std::vector<std::unique_ptr<SlowRadio>>& radios) {
  constexpr double kSeconds = 20;
  std::vector<std::pair<int, LONG64>> before;
  for (const auto& radio : radios) before.emplace_back(radio->metersAsked(), radio->busy());
  Sleep(static_cast<DWORD>(kSeconds * 1000));
  std::vector<double> meters, busy;
  for (std::size_t i = 0; i < radios.size(); ++i) {
    meters.push_back((radios[i]->metersAsked() - before[i].first) / kSeconds);
    busy.push_back(microseconds(radios[i]->busy() - before[i].second) / kSeconds / 1e4);
  }
  const double allowed = kShare / 100 * 1000 / kSlow;
  print({"eight radios of 100 ms a command: busiest line", *std::ranges::max_element(busy),
         "% of its time", "what polling may use", kShare, 1.02});
  print({"the same: S-meter readings, shown", meters[0], "a second",
         "all commands that 60 % of the line allows", allowed});
  print({"the same: S-meter readings, slowest of the others",
         *std::min_element(meters.begin() + 1, meters.end()), "a second",
         "all commands that 60 % of the line allows", allowed});
}

/// From the key to its bytes at the radio.
void printCommands(wine::RunningPanel& panel, const SlowRadio& radio) {
  Latencies times;
  for (int i = 0; i < 60; ++i) {
    // At any moment of what the line is doing.
    Sleep(static_cast<DWORD>(500 + i * 37 % 200));
    const int told = radio.frequenciesTold();
    const LONG64 start = counter();
    panel.keyHere(VK_RIGHT);
    const ULONGLONG end = GetTickCount64() + 5000;
    for (; radio.frequenciesTold() == told; Sleep(5))
      must(GetTickCount64() < end, "a command to the radio");
    times.add(microseconds(radio.toldAt() - start) / 1000);
  }
  print({"the same: key to the command's bytes, median", times.median(), "ms",
         "one command that is under way", kSlow});
  print({"the same: key to the command's bytes, worst of 60", times.worst(), "ms",
         "one command that is under way", kSlow, 1.5});
}

void measureSlow() {
  std::vector<std::unique_ptr<SlowRadio>> radios;
  std::string receivers = "Version=1\r\n";
  for (int i = 0; i < kRadios; ++i) {
    radios.push_back(std::make_unique<SlowRadio>(kSlow));
    receivers += section(radios.back()->port());
  }
  const wine::Instance instance(L"BenchSlow");
  instance.writeReceivers(receivers);
  wine::RunningPanel panel(instance.name());
  must(panel.shown() && wine::eventually([&] { return panel.tabs() == kRadios; }), "eight tabs");
  // Until each is up, which takes the display for a moment, and has told all that it can do.
  Sleep(12'000);
  panel.clickTab(0);
  must(panel.settledOn(0), "a link that is up");
  printLines(radios);
  printCommands(panel, *radios[0]);
  panel.close();
  panel.ended();
}

}  // namespace

int main() {
  return measure([] {
    measureEight();
    measureLosses();
    measureSlow();
  });
}
