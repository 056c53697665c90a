#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace kelvane::ambrel {

/// A line of a text table that says something: its number in the file, from 1, and its fields
/// without the blanks around them.
struct TableRow {
  int line = 0;
  std::vector<std::string> fields;
};

/// The rows of a text whose fields are parted by ";". Empty lines and lines that begin with "#" are
/// left out. UTF-8 with or without its mark; text that is not UTF-8 is taken for Latin-1. None when
/// it is no text at all; `problem` then says so in words.
std::optional<std::vector<TableRow>> readTable(std::string_view text, std::string& problem);

/// Why these bytes cannot be a text of ours ("the file is empty", "... is UTF-16 ..."); empty when
/// they can.
std::string whyNoText(std::string_view bytes);

}  // namespace kelvane::ambrel
