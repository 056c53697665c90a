#pragma once

#include <windows.h>

#include <commdlg.h>

namespace kelvane::common_dialogs {

/// The system's file dialogs, from a library that is loaded with the first of them: it brings the
/// printers along, and takes a third of the memory and a quarter of the start of a program that may
/// never show one. They fail as the system's own do; without the library they answer FALSE.
BOOL openFileName(OPENFILENAMEW* request);
BOOL saveFileName(OPENFILENAMEW* request);
/// Why the last of them on this thread failed; 0 where the operator cancelled it.
DWORD lastError();

}  // namespace kelvane::common_dialogs
