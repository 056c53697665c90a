#pragma once

#include <array>
#include <deque>
#include <functional>
#include <map>
#include <memory_resource>
#include <span>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "components/ambrel/formats/list_format.h"

namespace kelvane::formats {

/// Walks through a table row by row and parts each row at its delimiters. Fields may be quoted,
/// with quotes inside doubled, and hold delimiters and line ends then. A quote that is not closed
/// within a few lines is taken for a letter, so that it swallows no more than its own line.
class TableRows {
 public:
  TableRows(std::string_view text, char delimiter) : rest_(text), delimiter_(delimiter) {}

  /// Moves to the next row that is not empty; false when there is none.
  bool next();
  /// The row's first line, from 1.
  std::size_t line() const { return line_; }
  std::string_view raw() const { return raw_; }
  const std::vector<std::string>& fields() const { return fields_; }
  /// Why the row says less than its program wrote: the text ends within a quoted field of it.
  /// Empty where it does not.
  std::string whyCut() const { return cut_ ? "the file is cut off within this line" : ""; }
  /// Without blanks at either end; empty beyond the last.
  std::string_view field(std::size_t place) const;

 private:
  bool cutQuoted();
  void cutPlain();
  void startField();

  std::string_view rest_;
  char delimiter_;
  std::size_t line_ = 0, nextLine_ = 1;
  std::string_view raw_;
  std::vector<std::string> fields_;  ///< reused; the first `count_` count
  std::size_t count_ = 0;
  bool cut_ = false;
};

/// Where headings stand in the first row of a table, whatever their case. Of columns with the same
/// heading the first counts.
class ColumnsByName {
 public:
  explicit ColumnsByName(const TableRows& rows) : names_(rows.fields()) {}
  const std::vector<std::string>& names() const { return names_; }
  /// Beyond the last, which is an empty field of each row, where there is none.
  std::size_t of(std::string_view heading) const;

 private:
  std::vector<std::string> names_;
};

/// What a list has in fields that only its program knows is kept among an entry's further columns,
/// under the program's name and the field's ("SDR# Shift"), and goes back there.
void keepField(Entry& entry, std::string_view program, std::string_view field,
               std::string_view value);
/// What was kept so; empty for nothing.
std::string_view keptField(const Entry& entry, std::string_view program, std::string_view field);

/// A mode of ours and a program's word for it. Of several rows with one mode the first is written.
struct ModeWord {
  Setting mode;
  std::string_view word;
};

/// Takes what a program says of the mode into the entry: by its own words, else by the usual ones.
/// A word that is unknown leaves the mode open and is remarked upon. A word that says more than our
/// mode does ("WFM (mono)") is kept as the program's field "mode".
void takeMode(std::string_view word, std::span<const ModeWord> words, Taken& taken,
              std::string_view program = {});
void remark(Taken& taken, std::string_view words);
/// Takes a bandwidth in Hz, or in the unit behind it; a number below `narrowest` is taken for kHz.
void takeWidth(std::string_view text, Taken& taken, Hz narrowest = 0);

/// Whether a field of a table is ticked: it says something else than no.
bool isMark(std::string_view text);

/// Counts what cannot be written, by what it is.
class Losses {
 public:
  void count(std::string_view what);
  /// Counts each part of the entry that a format without it loses.
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
  void countParts(const Entry& entry, unsigned lacking);
  /// Counts a note of more lines than a field of a table may have.
  void countLines(const Entry& entry);
  /// Counts further columns other than those that were kept for this program.
  void countFurther(const Entry& entry, std::string_view program);
  bool none() const;
  std::vector<std::string> words() const;

 private:
  std::array<std::size_t, 9> parts_{};  ///< of each part
  std::map<std::string, std::size_t, std::less<>> counts_;
};

/// The program's word for the entry's mode. Where it has none for that mode the nearest is taken
/// and counted as a loss; `none` where the entry leaves its mode open.
/// A word of the program's own that was kept and still means the entry's mode goes before.
std::string_view wordFor(const Entry& entry, std::span<const ModeWord> words, std::string_view none,
                         Losses& losses, std::string_view program = {});

/// Gives each name once: a name that was met before gets a number behind it. The names outlive it.
class UniqueNames {
 public:
  void reserve(std::size_t names) { met_.reserve(names); }
  std::string_view unique(std::string_view name);

 private:
  std::pmr::monotonic_buffer_resource room_;  // a hundred thousand small pieces otherwise
  std::pmr::unordered_map<std::string_view, int> met_{&room_};
  std::deque<std::string> numbered_;
};

/// The group first, "Untagged" where there is none but tags are, then the tags, parted by ",".
void appendGroupAndTags(std::string& text, const Entry& entry, Losses& losses);
void takeGroupAndTags(std::string_view text, Entry& entry);

void appendJsonText(std::string& text, std::string_view value);
void appendXmlText(std::string& text, std::string_view value);
/// A field of a table, in quotes where it needs them.
void appendTableField(std::string& text, std::string_view value, char delimiter);
/// The same, always in quotes. Of a text of very many lines the line ends become blanks.
void appendQuoted(std::string& text, std::string_view value);

// The readers and writers of each format. A text is UTF-8.
Reading readGqrx(std::string_view text);
Writing writeGqrx(std::span<const lists::EntryPtr> entries);
Reading readChirp(std::string_view text);
Writing writeChirp(std::span<const lists::EntryPtr> entries);
Reading readSdrPlusPlus(const std::string& text);
Writing writeSdrPlusPlus(std::span<const lists::EntryPtr> entries, bool settings);
Reading readSdrSharp(std::string text);
Writing writeSdrSharp(std::span<const lists::EntryPtr> entries);
Reading readKiwiJson(const std::string& text);
Writing writeKiwiJson(std::span<const lists::EntryPtr> entries);
Reading readKiwiCsv(std::string_view text);
Writing writeKiwiCsv(std::span<const lists::EntryPtr> entries);
Reading readOpenWebRx(const std::string& text);
Writing writeOpenWebRx(std::span<const lists::EntryPtr> entries);
Reading readSdrAngel(std::string_view text);
Writing writeSdrAngel(std::span<const lists::EntryPtr> entries);
/// With a delimiter of 0 that is guessed too.
TableShape guessShape(std::string_view text, char delimiter = 0);
Reading readAnyTable(std::string_view text, const TableShape& shape);
Writing writeAnyTable(std::span<const lists::EntryPtr> entries);

}  // namespace kelvane::formats
