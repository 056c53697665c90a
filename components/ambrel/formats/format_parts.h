#pragma once

#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "components/ambrel/formats/list_format.h"

namespace kelvane::formats {

/// Quoted fields of a table run over no more lines than this.
inline constexpr int kMostLinesOfField = 20;

/// What stands among tags for no group.
inline constexpr std::string_view kUntagged = "Untagged";

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
std::string_view keptFurther(const Entry& entry, std::string_view program, std::string_view field);
inline std::string_view keptField(const Entry& entry, std::string_view program,
                                  std::string_view field) {
  // Most stations have none of them.
  return entry.further.empty() ? std::string_view() : keptFurther(entry, program, field);
}

/// A mode of ours and a program's word for it. Of several rows with one mode the first is written.
struct ModeWord {
  Setting mode;
  std::string_view word;
};

/// The field in which a program's own word for the mode is kept.
inline constexpr std::string_view kModeField = "mode";
/// What a word means by a program's own words, else by the usual ones.
std::optional<Setting> meaningOf(std::string_view word, std::span<const ModeWord> words);

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

void takeGroupAndTags(std::string_view text, Entry& entry);

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
