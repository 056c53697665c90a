#pragma once

#include <windows.h>

#include "gui/win32/accessible.h"
#include "ui/main_controls.h"

namespace kelvane::win32 {

/// Says to screen readers what a control of the main window is.
void giveRole(HWND window, Kind kind);

}  // namespace kelvane::win32
