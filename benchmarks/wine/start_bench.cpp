#include <windows.h>

#include <filesystem>
#include <string>

#include "base/win32/utf16.h"
#include "benchmarks/latencies.h"
#include "benchmarks/wine/process_accounts.h"
#include "benchmarks/wine/timing_board.h"
#include "tests/wine/instance.h"
#include "tests/wine/running_panel.h"

// From the start of the program to its visible window, and the memory that it takes, against bare
// programs in the same Windows.

namespace {

using namespace kelvane;
using namespace kelvane::bench;

constexpr int kRuns = 21;
constexpr ULONGLONG kPatience = 30'000;

struct Program {
  const wchar_t* file;
  std::wstring words;
  const wchar_t* windowClass;
};

struct Search {
  DWORD process;
  const wchar_t* windowClass;
  HWND found = nullptr;
};

BOOL CALLBACK compare(HWND window, LPARAM parameter) {
  auto& search = *reinterpret_cast<Search*>(parameter);
  DWORD process = 0;
  GetWindowThreadProcessId(window, &process);
  if (process != search.process || !IsWindowVisible(window)) return TRUE;
  wchar_t name[64] = L"";
  GetClassNameW(window, name, 64);
  if (std::wstring(name) != search.windowClass) return TRUE;
  search.found = window;
  return FALSE;
}

/// A program from its start to its window on the screen; closed at the end.
class Started {
 public:
  explicit Started(const Program& program) {
    const auto file = wine::programFolder() / program.file;
    std::wstring line = L"\"" + file.wstring() + L"\" " + program.words;
    STARTUPINFOW start{};
    start.cb = sizeof start;
    const LONG64 before = counter();
    must(CreateProcessW(file.c_str(), line.data(), nullptr, nullptr, FALSE, 0, nullptr, nullptr,
                        &start, &process_),
         "starting " + narrow(file.wstring()));
    const ULONGLONG end = GetTickCount64() + kPatience;
    while (!(window_ = visibleWindow(program.windowClass))) {
      must(GetTickCount64() < end, "the window of " + narrow(file.wstring()));
      Sleep(1);
    }
    milliseconds_ = microseconds(counter() - before) / 1000;
  }
  Started(const Started&) = delete;
  Started& operator=(const Started&) = delete;
  ~Started() {
    PostMessageW(window_, WM_CLOSE, 0, 0);
    if (WaitForSingleObject(process_.hProcess, 15'000) != WAIT_OBJECT_0)
      TerminateProcess(process_.hProcess, 99);
    CloseHandle(process_.hThread);
    CloseHandle(process_.hProcess);
  }

  double milliseconds() const { return milliseconds_; }

 private:
  HWND visibleWindow(const wchar_t* windowClass) const {
    Search search{process_.dwProcessId, windowClass};
    EnumWindows(compare, reinterpret_cast<LPARAM>(&search));
    return search.found;
  }

  PROCESS_INFORMATION process_{};
  HWND window_ = nullptr;
  double milliseconds_ = 0;
};

const wine::Instance& instance() {
  static const wine::Instance only(L"BenchStart");
  return only;
}

Program panel() { return {L"Kelvane.exe", instance().name(), L"KelvaneMAin"}; }
Program bare(const wchar_t* words) { return {L"bare_window.exe", words, L"KelvaneBareWindow"}; }

void measureStart() {
  Latencies own, other;
  for (int run = 0; run <= kRuns; ++run) {
    const double bareTime = Started(bare(L"with-controls")).milliseconds();
    const double ownTime = Started(panel()).milliseconds();
    if (run == 0) continue;  // brings the files into memory and makes the instance's own
    own.add(ownTime);
    other.add(bareTime);
  }
  print({"start to visible window, median", own.median(), "ms", "bare program, same controls",
         other.median(), 1.5});
}

ProcessAccounts::Memory memoryOf(const Program& program, const std::string& file,
                                 const std::string& word) {
  const Started started(program);
  Sleep(4000);  // all links are up, and everything has been painted
  return ProcessAccounts::ofCommand(file, word).memory();
}

void measureMemory() {
  const auto own = memoryOf(panel(), "Kelvane.exe", "BenchStart");
  const auto same = memoryOf(bare(L"with-controls"), "bare_window.exe", "with-controls");
  const auto plain = memoryOf(bare(L"plain-window"), "bare_window.exe", "plain-window");
  print({"memory, resident", own.resident, "MB", "bare window", plain.resident, 1.5});
  print(
      {"memory, private, what stands in no file", own.made, "MB", "bare window", plain.made, 1.5});
  print({"memory, private, its program files too", own.own, "MB", "bare window", plain.own, 1.5});
  print({"memory, private, its program files too", own.own, "MB", "bare window, same controls",
         same.own});
}

}  // namespace

int main() {
  return measure([] {
    measureStart();
    measureMemory();
  });
}
