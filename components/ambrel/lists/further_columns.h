#pragma once

#include <span>
#include <string_view>
#include <vector>

#include "components/ambrel/lists/entry.h"

namespace kelvane::lists {

/// The headings of the columns that this program does not know, of all entries, in the order in
/// which they are met. The texts are the entries' own.
std::vector<std::string_view> furtherHeadings(std::span<const EntryPtr> entries);

/// What an entry has in such a column; empty for nothing.
std::string_view furtherField(const Entry& entry, std::string_view heading);

}  // namespace kelvane::lists
