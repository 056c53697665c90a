#include "win32/sole_panel.h"

#include <utility>

#include "base/instance_name.h"
#include "win32/text.h"

namespace kelvane::win32 {

namespace {

/// For how long a panel that starts or ends is waited for, ms.
constexpr ULONGLONG kWaitForOther = 10'000;
constexpr DWORD kLookEvery = 50;
constexpr UINT kLongestAnswer = 2000;

HWND windowOf(DWORD handle) { return reinterpret_cast<HWND>(static_cast<ULONG_PTR>(handle)); }

struct VisibleWindow {
  DWORD process;
  HWND found = nullptr;
};

BOOL CALLBACK findVisible(HWND window, LPARAM parameter) {
  auto& search = *reinterpret_cast<VisibleWindow*>(parameter);
  DWORD process = 0;
  GetWindowThreadProcessId(window, &process);
  if (process != search.process || !IsWindowVisible(window)) return TRUE;
  search.found = window;
  return FALSE;
}

}  // namespace

SolePanel::SolePanel(std::string_view instance)
    : name_(wide("Local\\Kelvane panel " + safeInstanceName(instance))) {
  // Names of keys and files do not tell capital letters from small ones.
  CharLowerBuffW(name_.data() + 6, static_cast<DWORD>(name_.size() - 6));
}

SolePanel::~SolePanel() {
  if (memory_) CloseHandle(memory_);
}

UINT SolePanel::showMessage() {
  static const UINT message = RegisterWindowMessageW(L"Kelvane.ShowPanel");
  return message;
}

bool SolePanel::claim() {
  if (memory_) return true;
  memory_ = CreateFileMappingW(INVALID_HANDLE_VALUE, nullptr, PAGE_READWRITE, 0, sizeof(Shown),
                               name_.c_str());
  const bool taken = !memory_ || GetLastError() == ERROR_ALREADY_EXISTS;
  // Who keeps it open would have it outlive its owner.
  if (taken && memory_) CloseHandle(std::exchange(memory_, nullptr));
  if (!taken) shownBy(nullptr);
  return !taken;
}

void SolePanel::shownBy(HWND window) {
  auto* shown = static_cast<Shown*>(MapViewOfFile(memory_, FILE_MAP_WRITE, 0, 0, sizeof(Shown)));
  if (!shown) return;
  *shown = {GetCurrentProcessId(), static_cast<DWORD>(reinterpret_cast<ULONG_PTR>(window))};
  UnmapViewOfFile(shown);
}

SolePanel::Shown SolePanel::shownNow() const {
  Shown now{};
  const HANDLE memory = OpenFileMappingW(FILE_MAP_READ, FALSE, name_.c_str());
  if (!memory) return now;
  if (const void* view = MapViewOfFile(memory, FILE_MAP_READ, 0, 0, sizeof now)) {
    now = *static_cast<const Shown*>(view);
    UnmapViewOfFile(view);
  }
  CloseHandle(memory);
  return now;
}

bool SolePanel::bringForward(const Shown& shown) {
  if (shown.process == 0) return false;
  // The program that the operator has just started may hand its right to the front over.
  AllowSetForegroundWindow(shown.process);
  if (shown.window != 0) {
    DWORD_PTR answer = 0;
    return SendMessageTimeoutW(windowOf(shown.window), showMessage(), 0, 0, SMTO_ABORTIFHUNG,
                               kLongestAnswer, &answer) &&
           answer == kAnswer;
  }
  // It has a question before it can show its window.
  VisibleWindow question{shown.process};
  EnumWindows(findVisible, reinterpret_cast<LPARAM>(&question));
  return question.found && SetForegroundWindow(question.found);
}

PanelClaim::Result SolePanel::claimOrShow() {
  const ULONGLONG end = GetTickCount64() + kWaitForOther;
  do {
    if (claim()) return Result::Ours;
    if (bringForward(shownNow())) return Result::Shown;
    Sleep(kLookEvery);
  } while (GetTickCount64() < end);
  return Result::Silent;
}

}  // namespace kelvane::win32
