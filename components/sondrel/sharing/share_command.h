#pragma once

#include <optional>
#include <string_view>
#include <vector>

#include "base/time.h"

namespace kelvane::sondrel {

/// Error codes of the rigctl network protocol, as "RPRT n" tells them.
enum class RigStatus : int {
  Ok = 0,
  Invalid = -1,        ///< a value that is none, or out of range
  TimedOut = -5,       ///< the radio does not answer
  NotAvailable = -11,  ///< unknown, or nothing that a receiver does
  AccessDenied = -22,  ///< not for other programs
};

struct Asked;

/// How a command's answer is closed in the plain form; in the extended form "RPRT n" ends all.
enum class Closing {
  Value,   ///< a get: its values alone, "RPRT n" only where it fails
  Status,  ///< a set: "RPRT n"
  Never,   ///< its value alone, in the extended form too
};

/// One command of the protocol.
struct CommandRow {
  char letter;  ///< 0 where it has none
  std::string_view name;
  int arguments;  ///< how many follow at most; kRestOfLine for everything up to the line's end
  Closing closing;
  RigStatus (*answer)(Asked&);
};
inline constexpr int kRestOfLine = 99;

/// A command as a line gives it.
struct ShareCommand {
  const CommandRow* row = nullptr;  ///< null for one that nobody knows
  /// What parts the records of an extended answer; 0 for a plain one.
  char separator = 0;
  bool bare = false;     ///< the long name stood without its backslash
  std::string_view vfo;  ///< given before the arguments; there is one receiver, so it says nothing
  std::vector<std::string_view> arguments;

  std::string_view argument(std::size_t i) const {
    return i < arguments.size() ? arguments[i] : std::string_view();
  }
};

/// Takes the commands of one line, one after the other. After a command that nobody knows the rest
/// of the line is dropped: nobody knows either where its arguments end.
class ShareLine {
 public:
  explicit ShareLine(std::string_view line) : rest_(line) {}
  /// None at the end of the line.
  std::optional<ShareCommand> next();

 private:
  void takeName(ShareCommand& command);
  void takeArguments(ShareCommand& command);
  std::string_view takeWord();
  std::string_view peekWord() const;

  std::string_view rest_;
};

/// The row of a long name; null where there is none.
const CommandRow* commandNamed(std::string_view name);
const CommandRow* commandOfLetter(char letter);
/// Whether a word is one of the names that programs give to a VFO.
bool isVfoName(std::string_view word);

}  // namespace kelvane::sondrel
