#include <windows.h>

#include <array>
#include <string>

#include "benchmarks/latencies.h"
#include "benchmarks/wine/process_accounts.h"
#include "benchmarks/wine/timing_copy.h"
#include "tests/wine/instance.h"
#include "tests/wine/running_panel.h"
#include "ui/control_ids.h"

// The real program with eight receivers at 50 meter readings a second each: what the windows that
// show all of them cost beside the panel, how soon the window answers meanwhile, and how long a
// level takes from its event to the bar on the screen.

namespace {

using namespace kelvane;
using namespace kelvane::bench;

constexpr LONG kMeterRate = 50;
constexpr int kSeconds = 15, kLevels = 500;
constexpr double kFrame = 16'000;  ///< us
constexpr int kZoomsToADay = 9;

class WatchedPanel {
 public:
  WatchedPanel() {
    must(panel_.settledOn(0), "the program showing the timing component's first receiver");
    Sleep(3000);  // the other links come up
    accounts_ = ProcessAccounts::ofCommand("Kelvane.exe", "BenchViews");
  }
  ~WatchedPanel() {
    panel_.close();
    panel_.ended();
  }

  void bars();
  void load();

 private:
  HWND open(WORD key, const wchar_t* windowClass, int left, int top);
  double share() const;
  void scrolling(HWND traces) const;
  void answers(HWND window, const std::string& name) const;
  COLORREF barPixel() const;

  SharedTiming timing_;
  wine::Instance instance_{L"BenchViews"};
  TimingCopy copy_;
  wine::RunningPanel panel_{instance_.name(), copy_.folder()};
  ProcessAccounts accounts_{0};
};

/// A place on the meter's bar that a weak level does not reach and a strong one does.
COLORREF WatchedPanel::barPixel() const {
  RECT bar{};
  GetWindowRect(panel_.control(id::Meter), &bar);
  const HDC screen = GetDC(nullptr);
  const COLORREF pixel = GetPixel(screen, bar.left + (bar.right - bar.left) / 2, bar.top + 8);
  ReleaseDC(nullptr, screen);
  return pixel;
}

void WatchedPanel::bars() {
  Latencies times;
  constexpr std::array<LONG, 2> kLevelsInTurn{-53, -120};
  for (int i = 0; i < kLevels; ++i) {
    const COLORREF before = barPixel();
    timing_->level = kLevelsInTurn[static_cast<std::size_t>(i) % 2];
    SetEvent(timing_.request());
    waitFor(timing_->levels, i + 1, "a level that was raised");
    const ULONGLONG end = GetTickCount64() + 5000;
    while (barPixel() == before) must(GetTickCount64() < end, "a bar that follows its level");
    times.add(microseconds(counter() - timing_->levelAt));
    Sleep(61 + i % 37);
  }
  times.printRows("meter event to changed bar", "us", "a bar's frame and the screen's", 66'000);
}

HWND WatchedPanel::open(WORD key, const wchar_t* windowClass, int left, int top) {
  panel_.key(key);
  HWND window = nullptr;
  must(wine::eventually([&] { return (window = panel_.findWindow(windowClass)) != nullptr; }),
       "a window that opens");
  SetWindowPos(window, nullptr, left, top, 0, 0, SWP_NOSIZE | SWP_NOZORDER | SWP_NOACTIVATE);
  Sleep(500);
  return window;
}

/// The program's share of one core, in per cent.
double WatchedPanel::share() const {
  Sleep(2000);
  const LONG64 start = counter();
  const double from = accounts_.seconds();
  const LONG events = timing_->meterEvents;
  Sleep(kSeconds * 1000);
  const double seconds = microseconds(counter() - start) / 1e6;
  must((timing_->meterEvents - events) / seconds > 0.9 * kMeterRate * 8, "events at their rate");
  return 100 * (accounts_.seconds() - from) / seconds;
}

void WatchedPanel::load() {
  timing_->metersAtOnce = 8;
  timing_->meterRate = kMeterRate;
  SetEvent(timing_.request());
  const double alone = share();
  const HWND rows = open(VK_F7, L"KelvaneOverview", 0, 420);
  const HWND traces = open(VK_F8, L"KelvaneTraces", 900, 0);
  const double both = share();
  print({"400 meter events a second, panel alone", alone, "% of a core"});
  print({"the same with overview and a trace of all eight: more", both - alone, "% of a core",
         "the most it should be", 10, 1});
  answers(panel_.window(), "the same: window's answer");
  for (int i = 0; i < kZoomsToADay; ++i)
    SendMessageW(GetDlgItem(traces, id::TraceLonger), BM_CLICK, 0, 0);
  print({"the same with 24 hours in the trace: more", share() - alone, "% of a core",
         "the most it should be", 10, 1});
  scrolling(traces);
  must(IsWindowVisible(rows) && IsWindowVisible(traces), "both windows");
  timing_->meterRate = 0;
}

/// A button that scrolls answers when the picture has been drawn.
void WatchedPanel::scrolling(HWND traces) const {
  Latencies times;
  const auto press = [traces](int i) {
    const LONG64 pressed = counter();
    SendMessageW(GetDlgItem(traces, i % 2 ? id::TraceOn : id::TraceBack), BM_CLICK, 0, 0);
    return microseconds(counter() - pressed);
  };
  // The first ones take the keyboard from the plot.
  for (int i = 0; i < 4; ++i) press(i);
  for (int i = 0; i < kLevels; ++i) {
    times.add(press(i));
    Sleep(10);
  }
  times.printRows("the same: 24 hours scrolled by a button, to the drawn picture", "us", "a frame",
                  kFrame);
}

/// How soon the window answers meanwhile.
void WatchedPanel::answers(HWND window, const std::string& name) const {
  Latencies times;
  const ULONGLONG end = GetTickCount64() + 20'000;
  while (GetTickCount64() < end) {
    DWORD_PTR result = 0;
    const LONG64 asked = counter();
    must(SendMessageTimeoutW(window, WM_NULL, 0, 0, SMTO_NORMAL, 5000, &result) != 0,
         "an answer of the window");
    times.add(microseconds(counter() - asked));
    Sleep(4);
  }
  times.printRows(name, "us", "a frame", kFrame);
}

}  // namespace

int main() {
  return measure([] {
    WatchedPanel panel;
    panel.bars();
    panel.load();
  });
}
