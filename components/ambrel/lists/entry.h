#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "contract/types.h"

namespace kelvane::lists {

/// A station of the operator's own list. Texts are UTF-8 without line ends but for the note, and
/// without blanks at either end.
struct Entry {
  Hz frequency = 0;  ///< above 0
  std::string name = {};
  Setting mode = -1;       ///< -1 where it is left open
  Setting width = 0;       ///< bandwidth, Hz; 0 where it is left open
  std::string group = {};  ///< the list or folder that it belongs to; may be empty
  std::string tags = {};   ///< words parted by ", "
  std::int16_t from = -1;  ///< minute of the day (UTC) at which it begins; -1 for the whole day
  std::int16_t to = -1;    ///< at which it ends, up to 1440; may lie before the beginning
  std::string days = {};   ///< as schedules write them ("Mo-Fr", "1245"); empty for every day
  bool favourite = false;
  bool skip = false;  ///< walks and scans pass it over
  std::string note = {};
  /// What the list has in columns that this program does not know, by the columns' headings.
  std::vector<std::pair<std::string, std::string>> further = {};

  bool operator==(const Entry&) const = default;
};

/// Entries are never changed, only replaced: lists, undo steps and other threads share them.
using EntryPtr = std::shared_ptr<const Entry>;
using Entries = std::vector<EntryPtr>;

}  // namespace kelvane::lists
