#pragma once

#include <functional>
#include <string>
#include <string_view>
#include <utility>

#include "settings/settings.h"
#include "ui/global.h"

namespace kelvane {

/// The window with the card of keyboard commands: what it is called and where it stands. Places are
/// in twips.
class MiniHelp {
 public:
  static constexpr std::string_view kCaption =
      "Select, Cut & Paste into RTF complient editor to save information";

  /// `saveReport` saves a report of the program's state and answers where it is; it may be empty.
  explicit MiniHelp(SettingsStore& settings, std::function<std::string()> saveReport = {})
      : settings_(settings), saveReport_(std::move(saveReport)) {}

  /// Whether there is a report to save, by the window's one button.
  bool hasReport() const { return static_cast<bool>(saveReport_); }
  /// Saves the report; answers for the operator where it is, or why it is nowhere.
  std::string saveReport() const { return saveReport_(); }

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
  std::function<std::string()> saveReport_;
};

}  // namespace kelvane
