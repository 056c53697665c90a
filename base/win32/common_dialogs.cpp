#include "base/win32/common_dialogs.h"

namespace kelvane::common_dialogs {

namespace {

template <class Function>
Function* function(const char* name) {
  static const HMODULE library =
      LoadLibraryExW(L"comdlg32.dll", nullptr, LOAD_LIBRARY_SEARCH_SYSTEM32);
  if (!library) return nullptr;
  return reinterpret_cast<Function*>(reinterpret_cast<void*>(GetProcAddress(library, name)));
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
