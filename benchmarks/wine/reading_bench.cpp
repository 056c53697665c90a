#include <windows.h>

#include <string>

#include "base/win32/utf16.h"
#include "benchmarks/latencies.h"
#include "benchmarks/wine/timing_board.h"
#include "tests/wine/instance.h"
#include "tests/wine/running_panel.h"
#include "ui/control_ids.h"

// Reading the hundred channels of a simulated receiver that takes no time of its own: from the key
// that opens the channel window, and from Reload, until the last row stands in the grid.

namespace {

using namespace kelvane;
using namespace kelvane::bench;

constexpr int kRuns = 11;
constexpr wchar_t kRead[] = L"100 channels of K read.";

HWND channelWindow(const wine::RunningPanel& panel) { return panel.findWindow(L"KelvaneChannel"); }

bool says(HWND window, const wchar_t* words) {
  wchar_t text[256] = L"";
  SendMessageW(GetDlgItem(window, id::ChnStatus), WM_GETTEXT, 256, reinterpret_cast<LPARAM>(text));
  return std::wstring(text) == words;
}

/// Milliseconds until the window says that all has been read.
double untilRead(const wine::RunningPanel& panel, LONG64 start) {
  const ULONGLONG end = GetTickCount64() + 20'000;
  HWND window = nullptr;
  while (!(window = channelWindow(panel)) || !says(window, kRead)) {
    must(GetTickCount64() < end, "the reading of every channel");
    Sleep(1);
  }
  return microseconds(counter() - start) / 1000;
}

void measureReading() {
  const wine::Instance instance(L"BenchReading");
  instance.writeReceivers("Version=1\r\n[Receiver 1]\r\nName=K\r\nChannels=0-99\r\n");
  wine::RunningPanel panel(instance.name());
  must(panel.settledOn(0), "the start of the panel");
  Latencies opening, reloading;
  for (int run = 0; run < kRuns; ++run) {
    const LONG64 opened = counter();
    panel.type("s");
    opening.add(untilRead(panel, opened));
    const HWND window = channelWindow(panel);
    SendMessageW(GetDlgItem(window, id::ChnStatus), WM_SETTEXT, 0, reinterpret_cast<LPARAM>(L""));
    const LONG64 reloaded = counter();
    SendMessageW(GetDlgItem(window, id::ChnReload), BM_CLICK, 0, 0);
    reloading.add(untilRead(panel, reloaded));
    PostMessageW(window, WM_CLOSE, 0, 0);
    must(wine::eventually([&] { return channelWindow(panel) == nullptr; }), "closing the window");
  }
  print({"100 channels read, from the key to the last row, median", opening.median(), "ms"});
  print({"100 channels read again, from Reload to the last row, median", reloading.median(), "ms"});
  panel.close();
}

}  // namespace

int main() {
  return measure([] { measureReading(); });
}
