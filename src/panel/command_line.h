#pragma once

#include <string>
#include <string_view>

namespace kelvane {

/// What the operator asked for when starting the program.
struct CommandLine {
  enum class Action {
    Run,    ///< start the panel
    Clean,  ///< delete the instance's settings, say so, and end
    Usage,  ///< show how it is used, and end
  };
  Action action = Action::Run;
  std::string instance;  ///< the instance's name as it was given, or the default; empty for Usage

  bool operator==(const CommandLine&) const = default;
};

/// Reads the text after the program's name: `[NAME] [-clean]`, or `-?`. Words are found anywhere in
/// the text, and whatever else stands there is the name as it stands.
CommandLine parseCommandLine(std::string_view text);

/// The text of the usage box.
std::string usageText();

/// The text that announces the deletion of an instance's settings.
std::string cleaningNotice(std::string_view instance);

/// Why the settings of an instance that runs are not deleted.
std::string runningNotice(std::string_view instance);

/// Why the panel is not started once more, when the running one cannot be brought to the front.
std::string silentNotice(std::string_view instance);

}  // namespace kelvane
