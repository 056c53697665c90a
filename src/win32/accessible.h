#pragma once

#include <windows.h>

#include <string_view>

#include "ui/main_controls.h"

namespace kelvane::win32 {

/// Gives a window the name that a screen reader speaks.
void speakAs(HWND window, std::string_view name);

/// Gives a control the name and role that a screen reader speaks.
void speakAs(HWND window, const ControlRow& row, int element);

}  // namespace kelvane::win32
