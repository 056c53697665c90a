#include "components/ambrel/formats/list_writing.h"

#include <algorithm>
#include <bit>
#include <functional>
#include <map>
#include <utility>

#include "base/text.h"

namespace kelvane::formats {

namespace {

/// In the order of Losses::Part.
constexpr std::array<std::string_view, 9> kParts = {
    "the mode", "the width",          "the group",     "the tags", "the times",
    "the days", "the favourite mark", "the skip mark", "the note"};

/// In the order of Losses::What.
constexpr std::array<std::string_view, Losses::Whats> kWhats = {
    "line ends of its long note, and gets blanks",
    "further columns",
    "its group, whose name means none there",
    "a comma in its group, and gets a blank",
    "a semicolon, and gets a comma",
    "its name, which is not the only one, and gets a number",
    "its place outside of all groups, and gets the list \"General\"",
    "its days, which are more than weekdays",
    "options that only KiwiSDR's JSON has",
    "its group, which is no type of KiwiSDR's"};

/// Where a mode stands in a table of all, the last place being for no known mode.
std::size_t placeOf(Setting mode) {
  return static_cast<std::size_t>(mode < 0 ? kModeCount : std::min(mode, kModeCount));
}

/// The mode that comes nearest to one for which a program has no word.
kelvane::Mode nearestTo(kelvane::Mode mode, bool hasRtty) {
  using enum kelvane::Mode;
  switch (mode) {
    case Sam:
    case Sal:
    case Sah:
    case DataAm:
    case Dsb:
    case Drm:
      return Am;
    case Fmn:
    case DataFm:
    case Wfm:
      return Fm;
    case Cwr:
      return Cw;
    case Rttyr:
      return hasRtty ? Rtty : Lsb;
    case DataLsb:
      return Lsb;
    default:
      return Usb;
  }
}

}  // namespace

void Losses::countParts(const Entry& entry, unsigned lacking) {
  const auto where = [](bool there, Part part) { return there ? unsigned{part} : 0u; };
  const unsigned there = where(entry.mode >= 0, Mode) | where(entry.width > 0, Width) |
                         where(!entry.group.empty(), Group) | where(!entry.tags.empty(), Tags) |
                         where(entry.from >= 0, Times) | where(!entry.days.empty(), Days) |
                         where(entry.favourite, Favourite) | where(entry.skip, Skip) |
                         where(!entry.note.empty(), Note);
  for (unsigned lost = there & lacking; lost != 0; lost &= lost - 1)
    ++parts_[static_cast<std::size_t>(std::countr_zero(lost))];
}

void Losses::countLines(const Entry& entry) {
  if (std::ranges::count(entry.note, '\n') >= kMostLinesOfField) count(LineEndsOfNote);
}

void Losses::countFurther(const Entry& entry, std::string_view program) {
  const auto kept = [program](const auto& column) {
    return column.first.starts_with(program) &&
           column.first.substr(program.size()).starts_with(' ');
  };
  if (!std::ranges::all_of(entry.further, kept)) count(FurtherColumns);
}

void Losses::countMode(Setting mode) { ++modes_[placeOf(mode)]; }

void Losses::add(const Losses& more) {
  const auto addTo = [](auto& all, const auto& others) {
    std::ranges::transform(all, others, all.begin(), std::plus());
  };
  addTo(parts_, more.parts_);
  addTo(whats_, more.whats_);
  addTo(modes_, more.modes_);
}

std::vector<std::string> Losses::words() const {
  std::map<std::string, std::size_t> counts;
  const auto put = [&counts](std::string what, std::size_t times) {
    if (times > 0) counts.emplace(std::move(what), times);
  };
  for (std::size_t part = 0; part < parts_.size(); ++part)
    put(std::string(kParts[part]), parts_[part]);
  for (std::size_t what = 0; what < whats_.size(); ++what)
    put(std::string(kWhats[what]), whats_[what]);
  for (std::size_t mode = 0; mode < modes_.size(); ++mode)
    put("its mode " + std::string(modeName(static_cast<Setting>(mode))) +
            ", and gets the nearest one",
        modes_[mode]);
  std::vector<std::string> all;
  for (const auto& [what, times] : counts)
    all.push_back(std::to_string(times) + (times == 1 ? " station loses " : " stations lose ") +
                  what + ".");
  return all;
}

WordsOfModes::WordsOfModes(std::span<const ModeWord> words, std::string_view none,
                           std::string_view program)
    : words_(words), none_(none), program_(program) {
  for (std::size_t mode = 0; mode < all_.size(); ++mode)
    all_[mode] = wordOf(static_cast<kelvane::Mode>(mode));
}

WordsOfModes::Word WordsOfModes::wordOf(kelvane::Mode mode) const {
  const auto find = [this](kelvane::Mode wanted) {
    const auto there = std::ranges::find(words_, static_cast<Setting>(wanted), &ModeWord::mode);
    return there == words_.end() ? std::string_view() : there->word;
  };
  if (const auto word = find(mode); !word.empty()) return {word, true};
  const auto near = find(nearestTo(mode, !find(kelvane::Mode::Rtty).empty()));
  return {near.empty() ? none_ : near, false};
}

WordsOfModes::Word WordsOfModes::of(const Entry& entry) const {
  if (!program_.empty() && !entry.further.empty()) {
    const auto kept = keptField(entry, program_, kModeField);
    if (!kept.empty() && meaningOf(kept, words_).value_or(-1) == entry.mode) return {kept, true};
  }
  return entry.mode < 0 ? Word{none_, true} : all_[placeOf(entry.mode)];
}

std::string_view WordsOfModes::wordFor(const Entry& entry, Losses& losses) const {
  const Word word = of(entry);
  if (!word.fits) losses.countMode(entry.mode);
  return word.text;
}

std::string_view UniqueNames::unique(std::string_view name) {
  const TextNumbers::Number met = met_.of(name);
  if (met.isNew) {
    times_.push_back(1);
    return name;
  }
  for (;;) {
    const std::string& numbered = numbered_.emplace_back(std::string(name) + " (" +
                                                         std::to_string(++times_[met.value]) + ")");
    if (met_.of(numbered).isNew) {
      times_.push_back(1);
      return numbered;
    }
    numbered_.pop_back();
  }
}

Writing joined(std::vector<ListPart>& parts, std::string_view foot) {
  ListPart& all = parts.front();
  for (const ListPart& part : std::span(parts).subspan(1)) {
    all.text.add(part.text.view());
    all.losses.add(part.losses);
  }
  all.text.add(foot);
  return {all.text.take(), all.losses.words()};
}

void addGroupAndTags(TextWriter& text, const Entry& entry, Losses& losses) {
  static constexpr ByteSet kComma(",");
  if (entry.group == kUntagged) losses.count(Losses::GroupThatMeansNone);
  const bool noGroup = entry.group.empty() && !entry.tags.empty();
  bool comma = false;
  text.addReplacing(noGroup ? kUntagged : std::string_view(entry.group), kComma, [&](char) {
    text.add(' ');
    comma = true;
  });
  if (comma) losses.count(Losses::CommaInGroup);
  if (entry.tags.empty()) return;
  for (const std::string_view tag : split(entry.tags, ',')) {
    if (!trimmed(tag).empty()) text.add(',').add(trimmed(tag));
  }
}

// A list has many texts, and hardly any has a sign that must be written otherwise.

void addJsonText(TextWriter& text, std::string_view value) {
  static constexpr ByteSet kEscaped("\"\\", ByteSet::Controls::Among);
  static constexpr char kHex[] = "0123456789abcdef";
  text.add('"');
  text.addReplacing(value, kEscaped, [&text](char c) {
    if (c == '"' || c == '\\')
      text.add('\\').add(c);
    else if (c == '\n')
      text.add("\\n");
    else
      text.add("\\u00").add(kHex[c >> 4]).add(kHex[c & 15]);
  });
  text.add('"');
}

void addXmlText(TextWriter& text, std::string_view value) {
  static constexpr ByteSet kEscaped("&<>", ByteSet::Controls::Among);
  text.addReplacing(value, kEscaped, [&text](char c) {
    if (c == '\n') text.add(c);
    if (c == '&' || c == '<' || c == '>') text.add(c == '&' ? "&amp;" : c == '<' ? "&lt;" : "&gt;");
  });
}

void addTableField(TextWriter& text, std::string_view value, const ByteSet& table) {
  const auto blank = [](char c) { return c == ' ' || c == '\t'; };
  if (value.empty()) return;
  if (blank(value.front()) || blank(value.back()) || table.firstIn(value) < value.size())
    addQuoted(text, value);
  else
    text.add(value);
}

void addQuoted(TextWriter& text, std::string_view value) {
  static constexpr ByteSet kDoubled("\"\n");
  bool manyLines = false, counted = false;
  text.add('"');
  text.addReplacing(value, kDoubled, [&](char c) {
    if (c == '"') {
      text.add("\"\"");
      return;
    }
    if (!std::exchange(counted, true))
      manyLines = std::ranges::count(value, '\n') >= kMostLinesOfField;
    text.add(manyLines ? ' ' : c);
  });
  text.add('"');
}

}  // namespace kelvane::formats
