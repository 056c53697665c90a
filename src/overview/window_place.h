#pragma once

#include <string>

#include "settings/settings.h"
#include "ui/global.h"

namespace kelvane {

/// Where a window of all receivers was, in twips; width and height 0 where it never was open.
struct WindowPlace {
  Global::Point at;
  int width = 0, height = 0;
};

/// The place that is kept under names that begin with the window's; `start` where there is none.
WindowPlace placeOf(const SettingsStore& settings, const std::string& window, Global::Point start);
void keepPlace(SettingsStore& settings, const std::string& window, const WindowPlace& place);

}  // namespace kelvane
