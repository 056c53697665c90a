#include "gui/win32/text_size.h"

#include <algorithm>

namespace kelvane::win32 {

namespace {

constexpr wchar_t kAccessibility[] = L"Software\\Microsoft\\Accessibility";
constexpr wchar_t kResolution[] = L"KelvaneResolution";
constexpr DWORD kUsual = 100, kLargest = 225;

}  // namespace

int textSize() {
  DWORD percent = kUsual, size = sizeof percent;
  if (RegGetValueW(HKEY_CURRENT_USER, kAccessibility, L"TextScaleFactor", RRF_RT_REG_DWORD, nullptr,
                   &percent, &size) != ERROR_SUCCESS)
    return kUsual;
  return static_cast<int>(std::clamp(percent, kUsual, kLargest));
}

UINT layoutResolution(HWND window, UINT dpi, int width, int height) {
  const int own = static_cast<int>(dpi), wanted = MulDiv(own, textSize(), 100);
  if (wanted == own) return dpi;
  MONITORINFO screen{};
  screen.cbSize = sizeof screen;
  GetMonitorInfoW(MonitorFromWindow(window, MONITOR_DEFAULTTONEAREST), &screen);
  const RECT& work = screen.rcWork;
  // A caption above, and frames that are never as thick as another one.
  const int frame = 2 * GetSystemMetricsForDpi(SM_CYCAPTION, dpi);
  const int room = std::min(MulDiv(work.right - work.left - frame, 96, width),
                            MulDiv(work.bottom - work.top - frame, 96, height));
  return static_cast<UINT>(std::max(own, std::min(wanted, room)));
}

void setResolution(HWND window, UINT resolution) {
  SetPropW(window, kResolution, reinterpret_cast<HANDLE>(UINT_PTR{resolution}));
}

UINT resolutionOf(HWND window) {
  const HWND root = GetAncestor(window, GA_ROOT);
  const auto set = static_cast<UINT>(reinterpret_cast<UINT_PTR>(GetPropW(root, kResolution)));
  return set ? set : GetDpiForWindow(window);
}

}  // namespace kelvane::win32
