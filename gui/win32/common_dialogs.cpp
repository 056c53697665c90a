#include "gui/win32/common_dialogs.h"

#include "base/win32/system_library.h"

namespace kelvane::common_dialogs {

namespace {

template <class Function>
Function* function(const char* name) {
  return systemFunction<Function>(L"comdlg32.dll", name);
}

BOOL show(const char* dialog, OPENFILENAMEW* request) {
  auto* const shows = function<BOOL WINAPI(OPENFILENAMEW*)>(dialog);
  return shows ? shows(request) : FALSE;
}

}  // namespace

BOOL openFileName(OPENFILENAMEW* request) { return show("GetOpenFileNameW", request); }

BOOL saveFileName(OPENFILENAMEW* request) { return show("GetSaveFileNameW", request); }

DWORD lastError() {
  auto* const answers = function<DWORD WINAPI()>("CommDlgExtendedError");
  return answers ? answers() : 0;
}

}  // namespace kelvane::common_dialogs
