#include "benchmarks/wine/slow_radio.h"

#include <windows.h>

#include <string>
#include <vector>

#include "benchmarks/table.h"
#include "benchmarks/wine/timing_board.h"
#include "tests/wine/instance.h"
#include "tests/wine/running_panel.h"
#include "ui/control_ids.h"

// A thousand turns of the wheel at once, on a radio whose link takes 20 ms for each command.

namespace {

using namespace kelvane;
using namespace kelvane::bench;

constexpr int kTurns = 1000;
constexpr int kCommand = 20;  ///< ms
constexpr int kStep = 100;    ///< Hz
constexpr int kStart = 7'050'000;

void burst() {
  INPUT turn{};
  turn.type = INPUT_MOUSE;
  turn.mi.dwFlags = MOUSEEVENTF_WHEEL;
  turn.mi.mouseData = WHEEL_DELTA;
  std::vector<INPUT> turns(kTurns, turn);
  must(SendInput(kTurns, turns.data(), sizeof turn) == kTurns, "turns of the wheel");
}

bool shows(const wine::RunningPanel& panel, int hertz, int wait = 30'000) {
  const std::string wanted = "  " + std::to_string(hertz);
  return wine::eventually([&] { return panel.digits() == wanted; }, wait);
}

void measureBurst() {
  SlowRadio radio(kCommand);
  const wine::Instance instance(L"BenchWheel");
  instance.writeReceivers(
      "Version=1\r\n[Receiver]\r\nName=Slow\r\nKind=rigctld\r\n"
      "Host=127.0.0.1\r\nPort=" +
      std::to_string(radio.port()) + "\r\n");
  wine::RunningPanel panel(instance.name());
  must(panel.settledOn(0), "the program showing the slow radio");
  panel.type("7050\r");
  must(shows(panel, kStart), "the first frequency");
  panel.type(std::to_string(kStep));
  panel.key(VK_RIGHT);
  RECT area;
  GetWindowRect(panel.control(id::Band), &area);
  SetCursorPos(area.left + 5, area.top + 5);
  Sleep(500);

  const int told = radio.frequenciesTold();
  const LONG64 turned = counter();
  burst();
  must(shows(panel, kStart - kTurns * kStep), "the frequency that all turns add up to");
  const double time = microseconds(counter() - turned) / 1000;
  print({"1000 wheel turns at once, to the final frequency", time, "ms", "1000 commands one by one",
         double(kTurns) * kCommand, 1});
  print({"the same, requests sent to the link", double(radio.frequenciesTold() - told), "", "turns",
         double(kTurns), 1});
  panel.close();
  panel.ended();
}

}  // namespace

int main() { return measure(measureBurst); }
