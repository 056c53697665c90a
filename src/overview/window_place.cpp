#include "overview/window_place.h"

namespace kelvane {

WindowPlace placeOf(const SettingsStore& settings, const std::string& window, Global::Point start) {
  return {
      {settings.number(window + "Left", start.left), settings.number(window + "Top", start.top)},
      settings.number(window + "Width", 0),
      settings.number(window + "Height", 0)};
}

void keepPlace(SettingsStore& settings, const std::string& window, const WindowPlace& place) {
  settings.writeNumber(window + "Left", place.at.left);
  settings.writeNumber(window + "Top", place.at.top);
  settings.writeNumber(window + "Width", place.width);
  settings.writeNumber(window + "Height", place.height);
}

}  // namespace kelvane
