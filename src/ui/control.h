#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "ui/colour.h"

namespace kelvane {

/// The text of a lamp that is lit; what it means is never said by its colour alone.
inline constexpr std::string_view kLampLit = "on";

/// What one control shows, as plain values. The panel's units change them; the window's skin puts
/// on the screen whatever differs from what is there, at most once a frame.
struct Control {
  std::string text;
  Colour fore = kWindowText;
  Colour back = kButtonFace;
  bool visible = true;
  bool enabled = true;
  bool pressed = false;   ///< a check box drawn as a button is down
  bool selected = false;  ///< a digit box: its one character is marked
  int width = 0;          ///< 96ths of an inch; 0: as the table of controls has it
  std::string tip;
  std::string spoken;  ///< accessible name where it says more than the table of controls

  bool operator==(const Control&) const = default;
};

/// One tab of a tab strip.
struct Tab {
  std::string caption;
  std::string tip;
  bool highlighted = false;
  int level = -1;  ///< place of its reading on a `MeterBar`; -1 without one

  bool operator==(const Tab&) const = default;
};

struct TabRow {
  std::vector<Tab> tabs;
  int selected = -1;

  bool operator==(const TabRow&) const = default;
};

}  // namespace kelvane
