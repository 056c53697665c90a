#pragma once

#include <cstddef>
#include <cstdint>
#include <limits>
#include <string>
#include <string_view>

#include "components/ambrel/stations/station_list.h"

namespace kelvane::ambrel {

/// Largest text of known frequencies that is read, bytes.
inline constexpr std::size_t kLargestKnownText = std::size_t{256} << 20;

/// Most sets in all lists together: a set's number has sixteen bits.
inline constexpr std::size_t kMostSets = std::numeric_limits<std::uint16_t>::max();

/// Reads named sets of known frequencies from their text form, which the shipped texts describe in
/// their heads: "[Name]" begins a set, a line is "kHz ; name ; info ; extra ; mode ; filter".
/// Records before the first heading are in a set called `title`. Lines that cannot be read are
/// counted and told; a text without a good line is refused.
StationList readKnownSets(std::string text, std::string_view title);

/// The words of one line of such a text.
struct KnownLine {
  std::string name;
  std::string info;
  std::string extra;
  Setting mode = -1;   ///< -1 where the line leaves it open
  Setting filter = 0;  ///< Hz; 0 where the line leaves it open
};

/// The line at an offset that the reading told.
KnownLine knownLineAt(std::string_view text, std::size_t offset);

}  // namespace kelvane::ambrel
