#include "components/sondrel/rigctld/rigctld_commands.h"

#include <algorithm>
#include <utility>

#include "base/text.h"

namespace kelvane::sondrel {

namespace {

using End = ReplyRule::End;

struct Wording {
  RigItem item;
  std::string_view get;  // the short command
  std::string_view set;
  std::string_view getName;  // the long names, which head an extended reply
  std::string_view setName;
  std::string_view argument;
  bool takesVfo;
};

constexpr Wording kWordings[] = {
    {RigItem::Frequency, "f", "F", "get_freq", "set_freq", "", true},
    {RigItem::Mode, "m", "M", "get_mode", "set_mode", "", true},
    {RigItem::Strength, "l", "", "get_level", "", "STRENGTH", true},
    {RigItem::Squelch, "\\get_dcd", "", "get_dcd", "", "", true},
    {RigItem::SquelchLevel, "l", "", "get_level", "", "SQL", true},
    {RigItem::Attenuator, "l", "L", "get_level", "set_level", "ATT", true},
    {RigItem::Agc, "l", "L", "get_level", "set_level", "AGC", true},
    {RigItem::Blanker, "u", "U", "get_func", "set_func", "NB", true},
    {RigItem::Preamp, "l", "L", "get_level", "set_level", "PREAMP", true},
    {RigItem::Pitch, "l", "L", "get_level", "set_level", "CWPITCH", true},
    {RigItem::Shift, "l", "L", "get_level", "set_level", "IF", true},
    {RigItem::Step, "n", "", "get_ts", "", "", true},
    {RigItem::Clock, "p", "P", "get_parm", "set_parm", "TIME", false},
};

const Wording& wordingOf(RigItem item) {
  for (const auto& row : kWordings) {
    if (row.item == item) return row;
  }
  return kWordings[0];
}

ReplyRule lines(int count) { return {End::Lines, count}; }

}  // namespace

RigCommand RigctldCommands::askVfoArgument() { return {"\\chk_vfo\n", lines(1)}; }
RigCommand RigctldCommands::askDescription() { return {"\\dump_state\n", {End::Done}}; }
RigCommand RigctldCommands::askModeLines() { return {"m\n", {End::Quiet}}; }

RigCommand RigctldCommands::askModes() const {
  // A plain list comes with a report from some servers and without from others.
  return command("M", "set_mode", "?", {End::Quiet});
}

RigCommand RigctldCommands::askLongDescription() const {
  return command("\\dump_caps", "dump_caps", "", {}, false);
}

RigCommand RigctldCommands::get(RigItem item) const {
  const auto& words = wordingOf(item);
  const auto plain = lines(item == RigItem::Mode ? modeLines_ : 1);
  return command(words.get, words.getName, words.argument, plain, words.takesVfo);
}

RigCommand RigctldCommands::setFrequency(std::int32_t hertz) const {
  return command("F", "set_freq", std::to_string(hertz), lines(1));
}

RigCommand RigctldCommands::setMode(std::string_view mode, std::int32_t width) const {
  // 0 leaves the width to the server, but the small servers take it at its word.
  const std::int32_t keep = dialect_ == Dialect::Minimal ? -1 : 0;
  const auto arguments = std::string(mode) + " " + std::to_string(width > 0 ? width : keep);
  return command("M", "set_mode", arguments, lines(1));
}

RigCommand RigctldCommands::set(RigItem item, std::int32_t number) const {
  const auto& words = wordingOf(item);
  const auto arguments = std::string(words.argument) + " " + std::to_string(number);
  return command(words.set, words.setName, arguments, lines(1), words.takesVfo);
}

RigCommand RigctldCommands::command(std::string_view word, std::string_view longName,
                                    std::string_view arguments, ReplyRule plain,
                                    bool takesVfo) const {
  const bool extended = dialect_ == Dialect::Extended;
  std::string line(extended ? "+" : "");
  line += word;
  if (vfoArgument_ && takesVfo) line += " currVFO";
  if (!arguments.empty()) line += " " + std::string(arguments);
  line += '\n';
  if (extended) {
    const auto end = headed_ ? End::Report : End::AnyReport;
    return {line, {end, 0, std::string(longName), std::string(word)}};
  }
  return {line, std::move(plain)};
}

std::optional<std::int32_t> readNumber(RigItem item, const Reply& reply) {
  if (!reply.ok() || reply.lines.empty()) return std::nullopt;
  const auto number = wholeOf(valueOf(reply.lines[0]));
  if (!number || (item == RigItem::Frequency && *number < 0)) return std::nullopt;
  return number;
}

std::optional<ModeAndWidth> readMode(const Reply& reply) {
  if (!reply.ok() || reply.lines.empty()) return std::nullopt;
  const auto first = valueOf(reply.lines[0]);
  const auto blank = std::min(first.find(' '), first.size());
  ModeAndWidth read{std::string(first.substr(0, blank)), 0};
  if (!isModeName(read.mode)) return std::nullopt;
  auto width = trimmed(first.substr(blank));
  if (width.empty() && reply.lines.size() > 1) width = valueOf(reply.lines[1]);
  if (width.empty()) return read;
  const auto hertz = wholeOf(width);
  if (!hertz) return std::nullopt;
  read.width = std::max(0, *hertz);
  return read;
}

}  // namespace kelvane::sondrel
