#include "win32/screens.h"

#include <windows.h>

namespace kelvane::win32 {

namespace {

BOOL CALLBACK addScreen(HMONITOR monitor, HDC, RECT*, LPARAM screens) {
  MONITORINFO info{};
  info.cbSize = sizeof info;
  GetMonitorInfoW(monitor, &info);
  const RECT& work = info.rcWork;
  reinterpret_cast<std::vector<Global::Area>*>(screens)->push_back(
      {{work.left, work.top}, {work.right - work.left, work.bottom - work.top}});
  return TRUE;
}

}  // namespace

std::vector<Global::Area> screens() {
  std::vector<Global::Area> found;
  EnumDisplayMonitors(nullptr, nullptr, addScreen, reinterpret_cast<LPARAM>(&found));
  return found;
}

}  // namespace kelvane::win32
