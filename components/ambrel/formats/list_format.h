#pragma once

#include <array>
#include <cstddef>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "components/ambrel/lists/entry.h"
#include "components/ambrel/lists/entry_texts.h"

namespace kelvane::formats {

using lists::Entry;

/// The lists of other programs that are read and written.
enum class Format {
  Own,
  Gqrx,
  SdrPlusPlus,          ///< what its frequency manager exports
  SdrPlusPlusSettings,  ///< its frequency manager's settings
  Chirp,
  SdrSharp,
  KiwiJson,
  KiwiCsv,
  OpenWebRx,
  SdrAngel,
  Csv,  ///< any table with delimiters
  Count
};

struct FormatName {
  std::string_view name;      ///< for the operator
  std::string_view fileName;  ///< as the program calls it
};
const FormatName& nameOf(Format format);

/// One station of a list that was read.
struct Taken {
  Entry entry;
  std::size_t place = 0;  ///< line of the file, from 1; in JSON and XML the entry's number
  std::string remark;     ///< what of it could not be taken over, in words; mostly empty
};

/// What is left out, and why.
struct LeftOut {
  std::size_t place = 0;
  std::string reason;
};

/// What a column of a table means; Ignored where nobody knows.
enum class Field {
  Ignored,
  Frequency,
  Name,
  Mode,
  Width,
  Group,
  Tags,
  Times,
  Begin,
  End,
  Days,
  Favourite,
  Skip,
  Note
};
inline constexpr std::array<std::string_view, 14> kFieldNames = {
    "(not used)", "Frequency", "Name", "Mode", "Width",     "Group", "Tags",
    "Times",      "Begin",     "End",  "Days", "Favourite", "Skip",  "Note"};

/// How a table with delimiters is to be read.
struct TableShape {
  char delimiter = ',';
  lists::Unit unit = lists::Unit::Guess;
  bool heading = false;               ///< a row names the columns
  std::size_t rowsBefore = 0;         ///< before that one
  std::vector<std::string> headings;  ///< as they stand there, or "Column 1"
  std::vector<Field> fields;          ///< of each column

  bool operator==(const TableShape&) const = default;
};

/// What was read of a list. Nothing is taken over from a file with a refusal.
struct Reading {
  Format format = Format::Csv;
  std::vector<Taken> taken;
  std::vector<LeftOut> leftOut;
  std::string refusal;  ///< in words; empty where the list can be read
  TableShape shape;     ///< of Format::Csv: how it was read
  bool lines = true;    ///< places are lines of the file
};

/// A list as another program reads it.
struct Writing {
  std::string text;
  std::vector<std::string> losses;  ///< what the format cannot hold, in words
};

/// Largest list that is read, bytes.
inline constexpr std::size_t kLargestList = std::size_t{512} << 20;
/// How deep JSON and XML may be nested.
inline constexpr int kDeepest = 64;

/// The bytes of a file as UTF-8 with lines that end in "\n": UTF-8 with or without its mark, UTF-16
/// in either order, else Latin-1 as Windows writes it.
std::string asUtf8(std::string_view bytes);

/// Which format a text (of `asUtf8`) is in, by what stands in it; Csv where it is no other.
Format recognised(const std::string& utf8);

/// Reads a list in the format that it is recognised to be in.
Reading readList(std::string_view bytes);
/// How a table is likely to be read whose columns are parted by that sign.
TableShape guessedShape(std::string_view bytes, char delimiter);
/// Reads a table by a shape that the operator chose.
Reading readTable(std::string_view bytes, const TableShape& shape);

/// The list as a program of that format reads it.
Writing writeList(std::span<const lists::EntryPtr> entries, Format format);

}  // namespace kelvane::formats
