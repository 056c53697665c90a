#pragma once

#include <array>
#include <string>
#include <string_view>

#include "settings/settings.h"
#include "ui/colours.h"

namespace kelvane {

/// The program-wide options. Born with their defaults, loaded once at start, saved when the
/// operator confirms the options dialog.
struct Options {
  Options();

  bool OptOnTop;           ///< keep the windows above others
  bool OptBeep;            ///< refused commands give a beep
  bool OptMonitorChanges;  ///< a hand at another receiver moves the display there
  bool OptShowNew;         ///< a link that comes up moves the display to its receiver
  bool OptFollowCarrier;
  bool OptAutoMode;
  bool OptAutoFilter;
  bool OptSendTime;        ///< a link that comes up gets the time of day
  bool OptDDELink;         ///< exchange digits with a DDE server
  std::string OptDDEName;  ///< base name of that server
  std::string OptPlace;    ///< the operator's: a locator or degrees; empty where he tells none
  ColourChoice OptColours = ColourChoice::AsSystem;  ///< what the program draws itself with

  bool operator==(const Options&) const = default;
};

/// One flag among the options: where it lives, what its setting is called, what it is by default.
struct OptionRow {
  bool Options::*member;
  std::string_view setting;
  bool fallback;
};

/// The flags, in the order in which they are saved.
inline constexpr std::array<OptionRow, 9> kOptionRows{{
    {&Options::OptOnTop, "WindowsOnTop", true},
    {&Options::OptBeep, "WindowsBeep", true},
    {&Options::OptMonitorChanges, "MonitorChanges", true},
    {&Options::OptFollowCarrier, "FollowCarrier", true},
    {&Options::OptAutoMode, "AutoMode", true},
    {&Options::OptAutoFilter, "AutoFilter", true},
    {&Options::OptSendTime, "SendTime", true},
    {&Options::OptDDELink, "DDELink", false},
    {&Options::OptShowNew, "ShowNewReceivers", true},
}};

/// The options as they are stored; a missing one is at its default.
Options loadOptions(const SettingsStore& settings);

/// `mine` and `stored` were made of `before`: what I changed is mine, all else is as it is stored.
Options joinOptions(const Options& before, const Options& mine, const Options& stored);

/// Writes all options, changed or not. False when one could not be written; the others still are.
bool saveOptions(const Options& options, SettingsStore& settings);

}  // namespace kelvane
