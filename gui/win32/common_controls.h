#pragma once

#include <windows.h>

#include <commctrl.h>

namespace kelvane::common_controls {

// The functions of the system's common controls, as they are named there. Libraries and programs of
// ours do not import that library: see systemFunction().

/// Makes these classes of windows known; `classes` are ICC_ values.
void use(DWORD classes);
BOOL setSubclass(HWND window, SUBCLASSPROC procedure, UINT_PTR id, DWORD_PTR data);
BOOL removeSubclass(HWND window, SUBCLASSPROC procedure, UINT_PTR id);
LRESULT defSubclass(HWND window, UINT message, WPARAM wParam, LPARAM lParam);

}  // namespace kelvane::common_controls
