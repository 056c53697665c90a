#include <windows.h>

#include <commctrl.h>

#include <filesystem>
#include <memory>
#include <string>

#include "base/safe_file.h"
#include "benchmarks/latencies.h"
#include "benchmarks/wine/timing_board.h"
#include "tests/fakes/bare_frequencies.h"
#include "tests/fakes/bare_receivers.h"
#include "ui/control_ids.h"
#include "win32/grid_window.h"
#include "win32/station_dialog.h"

// The window of the operator's own list with 100,000 stations: from nothing to its rows on the
// screen, a line of scrolling, and finding as one types, each until it is painted.

namespace {

using namespace kelvane;
using namespace kelvane::bench;
namespace fs = std::filesystem;

constexpr std::size_t kStations = 100'000;
constexpr int kOpenings = 11, kLines = 300;

struct Nobody : FileDialogs, MessageBoxes {
  std::optional<std::string> open(const FileRequest&) override { return std::nullopt; }
  std::optional<std::string> save(const FileRequest&) override { return std::nullopt; }
  Choice show(const std::string&, const std::string&, Buttons) override { return Choice::Cancel; }
};

void writeList(const fs::path& file) {
  std::string text = "kHz ; Name ; Mode ; Width ; Group\n";
  for (std::size_t i = 0; i < kStations; ++i) {
    text += std::to_string(150 + i * 20) + " ; Station " + std::to_string(i * 7919 % kStations);
    text += " ; AM ; 6000 ; Group " + std::to_string(i % 20) + "\n";
  }
  must(writeFileSafely(file, text).ok(), "the list's file");
}

void runPending() {
  MSG message;
  while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE)) DispatchMessageW(&message);
}

double millisecondsSince(LONG64 start) { return microseconds(counter() - start) / 1000; }

/// Its window and all in it, painted.
void painted(HWND window) {
  RedrawWindow(window, nullptr, nullptr, RDW_UPDATENOW | RDW_ALLCHILDREN);
  GdiFlush();
}

class Bench {
 public:
  explicit Bench(const fs::path& folder)
      : editor_({receivers_, frequencies_, files_, nobody_, folder, std::make_shared<FileSteps>(),
                 [](Hz, Setting, Setting) { return true; }, [] { return Index{0}; },
                 [this] {
                   dialog_ = std::make_unique<win32::StationDialog>(nullptr, editor_, colours_);
                   dialog_->present();
                 }}) {}

  void run() {
    Latencies opening, scrolling, finding;
    const LONG64 first = counter();
    editor_.open();
    while (!editor_.store().ready()) editor_.deliver();
    painted(dialog_->window());
    print({"My stations of 100,000, opened the first time, its file read", millisecondsSince(first),
           "ms"});
    for (int i = 0; i < kOpenings; ++i) {
      editor_.close();
      runPending();
      const LONG64 start = counter();
      editor_.open();
      painted(dialog_->window());
      opening.add(millisecondsSince(start));
      while (editor_.store().busy()) editor_.deliver();
      runPending();
    }
    const HWND grid = GetDlgItem(dialog_->window(), id::StnGrd);
    for (int i = 0; i < kLines; ++i) {
      const LONG64 start = counter();
      SendMessageW(grid, WM_VSCROLL, SB_LINEDOWN, 0);
      painted(dialog_->window());
      scrolling.add(millisecondsSince(start));
      runPending();
    }
    must(editor_.grid().top() == kLines, "every line was scrolled");
    const HWND search = GetDlgItem(dialog_->window(), id::StnSearch);
    for (const wchar_t* typed : {L"S", L"St", L"Station 4", L"Station 42", L"Station 421", L"9",
                                 L"94", L"942", L"Group 7", L"nothing", L""}) {
      const LONG64 start = counter();
      SetWindowTextW(search, typed);
      painted(dialog_->window());
      finding.add(millisecondsSince(start));
      runPending();
    }
    must(editor_.table().rows() == kStations, "nothing is left out at the end");
    print({"My stations of 100,000, opened, worst", opening.worst(), "ms", "limit", 150, 1});
    print({"My stations of 100,000, a line of scrolling, median", scrolling.median(), "ms", "limit",
           16, 1});
    print({"My stations of 100,000, find as one types, median", finding.median(), "ms", "limit", 50,
           1});
    print({"My stations of 100,000, find as one types, worst", finding.worst(), "ms", "limit", 50});
    editor_.close();
  }

 private:
  fakes::BareReceivers receivers_;
  fakes::BareFrequencies frequencies_;
  Nobody nobody_;
  FileFlows files_{nobody_, nobody_};
  win32::ScreenColours colours_;
  std::unique_ptr<win32::StationDialog> dialog_;
  StationEditor editor_;
};

}  // namespace

int main() {
  return measure([] {
    const fs::path folder = fs::temp_directory_path() / "kelvane-stations-bench";
    fs::create_directories(folder);
    writeList(folder / lists::kOwnListName);
    Bench(folder).run();
    fs::remove_all(folder);
  });
}
