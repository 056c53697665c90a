#include "components/sondrel/sharing/share_command.h"

#include <algorithm>
#include <array>

#include "base/text.h"

namespace kelvane::sondrel {

namespace {

constexpr std::string_view kBlanks = " \t";
constexpr std::string_view kSeparators = "+;|,";

bool isNamePart(char c) { return isDigit(c) || c == '_' || isSmall(c) || isCapital(c); }

std::size_t nameLength(std::string_view text) {
  return static_cast<std::size_t>(std::ranges::find_if_not(text, isNamePart) - text.begin());
}

/// Whether a word may be read letter by letter: "fm" is two commands, "get_frequency" is none.
bool isLetters(std::string_view word) {
  for (; !word.empty(); word.remove_prefix(1)) {
    const CommandRow* row = commandOfLetter(word.front());
    if (!row) return false;
    // "F7100000"
    if (row->arguments > 0 && word.size() > 1) return !isNamePart(word[1]) || isDigit(word[1]);
  }
  return true;
}

}  // namespace

bool isVfoName(std::string_view word) {
  static constexpr std::array<std::string_view, 14> kNames = {
      "currVFO", "VFO",   "VFOA", "VFOB", "VFOC", "Main", "Sub",
      "MainA",   "MainB", "SubA", "SubB", "MEM",  "TX",   "RX"};
  return std::ranges::any_of(kNames,
                             [&](std::string_view name) { return equalIgnoringCase(name, word); });
}

std::optional<ShareCommand> ShareLine::next() {
  rest_ = trimmed(rest_);
  if (rest_.empty()) return std::nullopt;
  ShareCommand command;
  if (kSeparators.find(rest_.front()) != std::string_view::npos) {
    command.separator = rest_.front() == '+' ? '\n' : rest_.front();
    rest_.remove_prefix(1);
    rest_ = trimmed(rest_);
  }
  takeName(command);
  if (command.row) {
    takeArguments(command);
  } else {
    rest_ = {};
  }
  return command;
}

void ShareLine::takeName(ShareCommand& command) {
  const bool named = !rest_.empty() && rest_.front() == '\\';
  if (named) rest_.remove_prefix(1);
  const std::string_view word = rest_.substr(0, nameLength(rest_));
  const CommandRow* row = commandNamed(word);
  if (named || row) {
    command.row = row;
    command.bare = !named;
    rest_.remove_prefix(word.size());
    return;
  }
  if (rest_.empty() || (word.size() > 1 && !isLetters(word))) return;
  command.row = commandOfLetter(rest_.front());
  rest_.remove_prefix(1);
}

std::string_view ShareLine::peekWord() const {
  const auto start = std::min(rest_.find_first_not_of(kBlanks), rest_.size());
  const auto end = std::min(rest_.find_first_of(kBlanks, start), rest_.size());
  return rest_.substr(start, end - start);
}

std::string_view ShareLine::takeWord() {
  const std::string_view word = peekWord();
  rest_.remove_prefix(static_cast<std::size_t>(word.data() - rest_.data()) + word.size());
  return word;
}

void ShareLine::takeArguments(ShareCommand& command) {
  // A command of a VFO's own has the name as its argument.
  const bool aboutVfo = command.row->name.find("_vfo") != std::string_view::npos &&
                        !command.row->name.ends_with("split_vfo");
  if (!aboutVfo && isVfoName(peekWord())) command.vfo = takeWord();
  if (command.row->arguments == kRestOfLine) {
    const std::string_view all = trimmed(rest_);
    if (!all.empty()) command.arguments.push_back(all);
    rest_ = {};
    return;
  }
  for (int i = 0; i < command.row->arguments && !peekWord().empty(); ++i) {
    command.arguments.push_back(takeWord());
    // The list of values is asked for; a width that follows from habit says nothing.
    if (command.arguments.back() != "?") continue;
    if (const std::string_view next = peekWord(); !next.empty() && isDigit(next.back())) takeWord();
    break;
  }
}

}  // namespace kelvane::sondrel
