#pragma once

#include <string_view>

#include "shell/global.h"
#include "shell/settings.h"

namespace kelvane {

/// The window with the card of keyboard commands: what it is called and where it stands. Places are
/// in twips.
class MiniHelp {
 public:
  static constexpr std::string_view kCaption =
      "Select, Cut & Paste into RTF complient editor to save information";

  explicit MiniHelp(SettingsStore& settings) : settings_(settings) {}

  /// Where it opens: where Escape left it, at first at the main window's own place.
  Global::Point startPlace(Global::Point owner) const {
    return {settings_.number("HelpLeft", owner.left), settings_.number("HelpTop", owner.top)};
  }
  /// Escape closes it; any other way of closing forgets the place.
  void escaped(Global::Point at) {
    settings_.writeNumber("HelpLeft", at.left);
    settings_.writeNumber("HelpTop", at.top);
  }

 private:
  SettingsStore& settings_;
};

}  // namespace kelvane
