#include <windows.h>

#include <commctrl.h>

#include <algorithm>
#include <string>

#include "benchmarks/latencies.h"
#include "benchmarks/wine/timing_board.h"
#include "win32/fonts.h"
#include "win32/grid_window.h"

// The grid with 100,000 rows: from nothing to its rows on the screen, and from a line of scrolling
// to the rows on the screen.

namespace {

using namespace kelvane;
using namespace kelvane::bench;
using win32::GridWindow;

constexpr GridRow kRows = 100'000;
constexpr int kOpenings = 11;
constexpr int kLines = 300;
constexpr int kWidth = 800, kHeight = 600;

class NumberedTable : public GridTable {
 public:
  GridRow rows() const override { return kRows; }
  std::string cell(GridRow row, int column) const override {
    return std::to_string(row * 7919ull % 30'000'000 + static_cast<unsigned>(column));
  }
  void store(GridCell, const std::string&) override {}
};

std::vector<GridColumn> nineColumns() {
  std::vector<GridColumn> columns;
  for (int i = 0; i < 9; ++i)
    columns.push_back({"Column " + std::to_string(i), 80, i % 2 == 0, i % 3 == 1});
  return columns;
}

HWND makeFrame(HINSTANCE instance) {
  WNDCLASSW own{};
  own.lpfnWndProc = DefWindowProcW;
  own.hInstance = instance;
  own.lpszClassName = L"KelvaneGridBench";
  RegisterClassW(&own);
  return CreateWindowExW(0, own.lpszClassName, L"Grid", WS_OVERLAPPEDWINDOW | WS_VISIBLE, 20, 20,
                         kWidth + 30, kHeight + 60, nullptr, nullptr, instance, nullptr);
}

void runPending() {
  MSG message;
  while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE)) DispatchMessageW(&message);
}

/// A grid on the screen, painted.
struct Shown {
  Shown(HWND frame, HFONT font, HINSTANCE instance)
      : window(CreateWindowExW(0, GridWindow::kClass, L"", GridWindow::kStyle | WS_CHILD, 0, 0,
                               kWidth, kHeight, frame, nullptr, instance, nullptr)),
        view(window, grid, "Rows", colours) {
    SendMessageW(window, WM_SETFONT, reinterpret_cast<WPARAM>(font), FALSE);
    ShowWindow(window, SW_SHOW);
    UpdateWindow(window);
    GdiFlush();
  }
  ~Shown() { DestroyWindow(window); }

  NumberedTable table;
  Grid grid{table, nineColumns()};
  HWND window;
  win32::ScreenColours colours;
  GridWindow view;
};

double millisecondsSince(LONG64 start) { return microseconds(counter() - start) / 1000; }

void measureGrid() {
  const HINSTANCE instance = GetModuleHandleW(nullptr);
  GridWindow::registerClass(instance);
  const HWND frame = makeFrame(instance);
  const win32::Fonts fonts(GetDpiForWindow(frame));
  runPending();
  Latencies opening, scrolling, stepping;
  for (int i = 0; i < kOpenings; ++i) {
    const LONG64 start = counter();
    const Shown shown(frame, fonts[Font::Normal], instance);
    opening.add(millisecondsSince(start));
    runPending();
  }
  Shown shown(frame, fonts[Font::Normal], instance);
  for (int i = 0; i < kLines; ++i) {
    const LONG64 start = counter();
    SendMessageW(shown.window, WM_VSCROLL, SB_LINEDOWN, 0);
    UpdateWindow(shown.window);
    GdiFlush();
    scrolling.add(millisecondsSince(start));
    runPending();
  }
  must(shown.grid.top() == kLines, "every line was scrolled");
  shown.view.keyDown(VK_END, 2);
  for (int i = 0; i < kLines; ++i) {
    const LONG64 start = counter();
    shown.view.keyDown(VK_UP, 0);
    UpdateWindow(shown.window);
    GdiFlush();
    stepping.add(millisecondsSince(start));
    runPending();
  }
  must(shown.grid.current().row == kRows - 1 - kLines, "every arrow moved a row");
  print({"grid of 100,000 rows, opened, worst", opening.worst(), "ms", "limit", 150, 1});
  print({"grid of 100,000 rows, a line of scrolling, median", scrolling.median(), "ms", "limit", 16,
         1});
  print({"grid of 100,000 rows, a line of scrolling, worst", scrolling.worst(), "ms", "limit", 16});
  print({"grid of 100,000 rows, a row by arrow, median", stepping.median(), "ms", "limit", 16, 1});
  DestroyWindow(frame);
}

}  // namespace

int main() {
  return measure([] { measureGrid(); });
}
