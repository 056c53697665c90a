#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "base/result.h"

namespace kelvane::ambrel {

/// A line of a text table that says something: its number in the file, from 1, and its fields
/// without the blanks around them.
struct TableRow {
  int line = 0;
  std::vector<std::string> fields;
};

/// The rows of a text whose fields are parted by ";". Empty lines and lines that begin with "#" are
/// left out. UTF-8 with or without its mark; text that is not UTF-8 is taken for Latin-1. Fails
/// where it is no text at all.
Result<std::vector<TableRow>> readTable(std::string_view text);

/// Whether these bytes can be a text of ours; else why not ("the file is empty", "... is UTF-16
/// ...").
Result<> checkText(std::string_view bytes);

}  // namespace kelvane::ambrel
