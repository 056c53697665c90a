#include "gui/win32/window_barrier.h"

#include "base/win32/utf16.h"

namespace kelvane::win32 {

namespace {

bool isOperators(UINT message) {
  return message == WM_COMMAND || message == WM_CLOSE || message == WM_KEYDOWN ||
         message == WM_SYSKEYDOWN || message == WM_CHAR || message == WM_SYSCHAR ||
         message == WM_MOUSEWHEEL || message == WM_LBUTTONDOWN || message == WM_LBUTTONUP;
}

}  // namespace

void tellFailure(HWND window, UINT message, const std::string& why) {
  static thread_local bool telling = false;
  if (message == WM_PAINT) ValidateRect(window, nullptr);
  // What fails behind the box that tells of a failure is noted only.
  if (!isOperators(message) || telling) return;
  telling = true;
  const std::wstring words = L"That did not succeed: " + wide(why) + L".";
  MessageBoxW(GetAncestor(window, GA_ROOT), words.c_str(), L"Kelvane", MB_OK | MB_ICONWARNING);
  telling = false;
}

}  // namespace kelvane::win32
