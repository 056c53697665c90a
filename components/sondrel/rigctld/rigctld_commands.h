#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "components/sondrel/rigctld/rigctld_capabilities.h"
#include "components/sondrel/rigctld/rigctld_reply.h"

namespace kelvane::sondrel {

/// One line to send, and how its reply ends.
struct RigCommand {
  std::string line;  ///< with its line end; always sent as one piece
  ReplyRule rule;
};

/// Writes command lines in the manner of one server. Numbers are written as they are given: they
/// have to be limited to what the radio allows before.
class RigctldCommands {
 public:
  /// `modeLines`: lines of a plain reply to the question for the mode, whose name and width may
  /// share one. `headed`: every labelled reply begins with the name of its command.
  RigctldCommands(Dialect dialect, bool vfoArgument, int modeLines, bool headed = true)
      : dialect_(dialect), vfoArgument_(vfoArgument), modeLines_(modeLines), headed_(headed) {}

  /// The very first questions, the same for every server.
  static RigCommand askVfoArgument();
  static RigCommand askDescription();
  /// The mode, read until the line falls quiet, to learn how many lines it takes.
  static RigCommand askModeLines();

  RigCommand askModes() const;
  /// Only for the extended dialect.
  RigCommand askLongDescription() const;
  /// Only for items that are read: not Filter and Bfo, which are read as Mode, Pitch and Shift.
  RigCommand get(RigItem item) const;
  RigCommand setFrequency(std::int32_t hertz) const;
  /// A width of 0 leaves the choice to the radio.
  RigCommand setMode(std::string_view mode, std::int32_t width) const;
  /// For Attenuator, Agc, Blanker, Preamp, Pitch, Shift and Clock.
  RigCommand set(RigItem item, std::int32_t number) const;

 private:
  RigCommand command(std::string_view word, std::string_view longName, std::string_view arguments,
                     ReplyRule plain, bool takesVfo = true) const;

  Dialect dialect_;
  bool vfoArgument_;
  int modeLines_;
  bool headed_;
};

/// What the reply to RigctldCommands::get(item) says. None for a reply that is no such value.
std::optional<std::int32_t> readNumber(RigItem item, const Reply& reply);

/// A mode and its filter.
struct ModeAndWidth {
  std::string mode;
  std::int32_t width = 0;  ///< Hz, 0 unknown

  bool operator==(const ModeAndWidth&) const = default;
};
/// Accepts name and width on one line or on two, and a name alone.
std::optional<ModeAndWidth> readMode(const Reply& reply);

}  // namespace kelvane::sondrel
