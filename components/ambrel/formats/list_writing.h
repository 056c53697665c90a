#pragma once

#include <array>
#include <cstddef>
#include <deque>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "base/in_parts.h"
#include "base/text_numbers.h"
#include "base/text_writer.h"
#include "components/ambrel/formats/format_parts.h"
#include "contract/modes.h"

namespace kelvane::formats {

// What the writers of the formats share. A list is written in a few parts at once, each with its
// own text and its own losses, which are joined in the end.

/// Counts what cannot be written, by what it is.
class Losses {
 public:
  /// Parts of an entry.
  enum Part : unsigned {
    Mode = 1,
    Width = 2,
    Group = 4,
    Tags = 8,
    Times = 16,
    Days = 32,
    Favourite = 64,
    Skip = 128,
    Note = 256
  };
  /// Counts each part of the entry that a format without it loses.
  void countParts(const Entry& entry, unsigned lacking);

  /// What else is lost.
  enum What {
    LineEndsOfNote,
    FurtherColumns,
    GroupThatMeansNone,
    CommaInGroup,
    Semicolon,
    NameTwice,
    PlaceOutsideOfGroups,
    DaysBeyondWeekdays,
    OptionsOfJson,
    GroupWithoutType,
    Whats
  };
  void count(What what) { ++whats_[what]; }
  /// Counts a note of more lines than a field of a table may have.
  void countLines(const Entry& entry);
  /// Counts further columns other than those that were kept for this program.
  void countFurther(const Entry& entry, std::string_view program);
  /// Counts a mode for which there is no word.
  void countMode(Setting mode);

  void add(const Losses& more);
  std::vector<std::string> words() const;

 private:
  std::array<std::size_t, 9> parts_{};  ///< of each part
  std::array<std::size_t, Whats> whats_{};
  std::array<std::size_t, std::size_t{kModeCount} + 1> modes_{};  ///< the last: of no known mode
};

/// A program's words for all modes, worked out once for a list.
class WordsOfModes {
 public:
  /// A mode for which there is no word gets that of the nearest one. `none` stands where an entry
  /// leaves its mode open. A word of the program's own that was kept and still means the entry's
  /// mode goes before; without a program none was.
  WordsOfModes(std::span<const ModeWord> words, std::string_view none,
               std::string_view program = {});

  struct Word {
    std::string_view text;
    bool fits = true;  ///< it means the entry's mode
  };
  Word of(const Entry& entry) const;
  /// Counts one that does not fit.
  std::string_view wordFor(const Entry& entry, Losses& losses) const;

 private:
  Word wordOf(kelvane::Mode mode) const;

  std::span<const ModeWord> words_;
  std::string_view none_, program_;
  std::array<Word, std::size_t{kModeCount} + 1> all_;  ///< the last: of no known mode
};

/// Gives each name once: a name that was met before gets a number behind it. The names outlive it.
class UniqueNames {
 public:
  explicit UniqueNames(std::size_t expected = 0) : met_(expected) { times_.reserve(expected); }
  std::string_view unique(std::string_view name);

 private:
  TextNumbers met_;
  std::vector<int> times_;  ///< that each was met
  std::deque<std::string> numbered_;
};

/// What one of the threads that write a list has written.
struct ListPart {
  TextWriter text;
  Losses losses;
  TextWriter room;  ///< for what is looked at before it is written
};

/// What a list is made of before and behind its lines, and how long a line mostly is, in bytes.
struct ListFrame {
  std::string_view head;
  std::size_t usualLine;
  std::string_view foot = {};
};

/// So many lines are worth a thread.
inline constexpr std::size_t kLinesOfThread = 5'000;

/// Writes a list of which `line(part, i)` writes the i-th of so many lines.
template <class Part, class Line>
std::vector<Part> writtenParts(const ListFrame& frame, std::size_t lines, const Line& line) {
  return inParts<Part>(lines, kLinesOfThread, [&](Part& part, std::size_t i, std::size_t end) {
    // The others are joined to the first.
    const std::size_t ends = frame.head.size() + frame.foot.size();
    part.text.reserve(i == 0 ? ends + lines * frame.usualLine : (end - i) * frame.usualLine);
    if (i == 0) part.text.add(frame.head);
    for (; i < end; ++i) line(part, i);
  });
}

/// The parts as one, with the foot behind them.
Writing joined(std::vector<ListPart>& parts, std::string_view foot);

template <class Line>
Writing writeLines(const ListFrame& frame, std::size_t lines, const Line& line) {
  std::vector<ListPart> parts = writtenParts<ListPart>(frame, lines, line);
  return joined(parts, frame.foot);
}

/// The group first, "Untagged" where there is none but tags are, then the tags, parted by ",".
void addGroupAndTags(TextWriter& text, const Entry& entry, Losses& losses);

void addJsonText(TextWriter& text, std::string_view value);
void addXmlText(TextWriter& text, std::string_view value);

/// What a field of a table is put in quotes for, by the table's delimiter.
inline constexpr ByteSet kCommaTable(",\"\n\r"), kSemicolonTable(";\"\n\r");
/// A field of a table, in quotes where it needs them.
void addTableField(TextWriter& text, std::string_view value, const ByteSet& table = kCommaTable);
/// The same, always in quotes. Of a text of very many lines the line ends become blanks.
void addQuoted(TextWriter& text, std::string_view value);

}  // namespace kelvane::formats
