#include "gui/win32/common_controls.h"

#include "base/win32/system_library.h"

namespace kelvane::common_controls {

namespace {

template <class Function>
Function* control(const char* name) {
  return systemFunction<Function>(L"comctl32.dll", name);
}

}  // namespace

void use(DWORD classes) {
  static auto* const init = control<decltype(InitCommonControlsEx)>("InitCommonControlsEx");
  const INITCOMMONCONTROLSEX wanted{sizeof wanted, classes};
  if (init) init(&wanted);
}

BOOL setSubclass(HWND window, SUBCLASSPROC procedure, UINT_PTR id, DWORD_PTR data) {
  static auto* const set = control<decltype(SetWindowSubclass)>("SetWindowSubclass");
  return set ? set(window, procedure, id, data) : FALSE;
}

BOOL removeSubclass(HWND window, SUBCLASSPROC procedure, UINT_PTR id) {
  static auto* const remove = control<decltype(RemoveWindowSubclass)>("RemoveWindowSubclass");
  return remove ? remove(window, procedure, id) : FALSE;
}

LRESULT defSubclass(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
  static auto* const pass = control<decltype(DefSubclassProc)>("DefSubclassProc");
  return pass ? pass(window, message, wParam, lParam) : 0;
}

}  // namespace kelvane::common_controls
