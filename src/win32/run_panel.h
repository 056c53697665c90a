#pragma once

#include <windows.h>

#include <string>

#include "settings/settings.h"
#include "ui/message_boxes.h"
#include "win32/sole_panel.h"

namespace kelvane::win32 {

/// Opens the instance's components and runs the panel until its window is closed; answers the
/// program's exit code. COM has been started on the thread, and the instance claimed.
int runPanel(HINSTANCE instance, const std::string& name, SettingsStore& settings,
             MessageBoxes& boxes, SolePanel& sole);

}  // namespace kelvane::win32
