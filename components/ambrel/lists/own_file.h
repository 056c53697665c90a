#pragma once

#include <cstddef>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "components/ambrel/lists/entry.h"

namespace kelvane::lists {

/// The name of the operator's own list in an instance's folder.
inline constexpr const char* kOwnListName = "my-stations.txt";
/// Largest list that is read, bytes.
inline constexpr std::size_t kLargestOwnList = std::size_t{512} << 20;

/// What a column of the list's text holds.
enum class Column { Khz, Name, Mode, Width, Group, Tags, Utc, Days, Favourite, Skip, Note, Count };

/// The columns of a text, as its heading names them.
struct Headings {
  /// For each column in turn what it holds; Column::Count for one that is unknown.
  std::vector<Column> columns;
  std::vector<std::string> unknown;  ///< the headings of the unknown ones, in turn
};

/// The order of a text that has no heading.
const Headings& usualHeadings();
/// Whether a line names columns; then `headings` has them.
bool readHeadings(std::string_view line, Headings& headings);

/// Reads one line of the text. Answers what is wrong with it, nullptr for nothing.
const char* readOwnLine(std::string_view line, const Headings& headings, Entry& entry);

/// What a text of the operator's list holds. Lines that cannot be read are kept as they are.
struct OwnText {
  Entries entries;
  std::vector<std::uint32_t> entriesAt;  ///< their lines in the text that was read, from 1
  std::vector<std::string> comments;     ///< lines of the operator's own that begin with "#"
  std::vector<std::string> unread;       ///< lines that are no stations
  std::vector<std::size_t> unreadAt;     ///< their numbers, from 1
  std::vector<const char*> reasons;      ///< and what is wrong with each
  std::string refusal;                   ///< why this is no such text at all; mostly empty
};

/// Reads UTF-8 with or without its mark; what is no UTF-8 is taken for Latin-1.
OwnText readOwnText(std::string_view bytes);

/// The text as it is kept: a head that explains it, then a line for each entry in turn.
std::string ownText(const OwnText& list);
std::string ownText(std::span<const EntryPtr> entries, std::span<const std::string> comments = {},
                    std::span<const std::string> unread = {});

/// What the file is to hold when another program changed it meanwhile: what it holds, without what
/// was removed since `base` was read or written and with what was added since then.
OwnText merged(const OwnText& base, const OwnText& mine, OwnText theirs);

}  // namespace kelvane::lists
