#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "components/ambrel/utc.h"

namespace kelvane::ambrel {

/// A broadcasting season: A is the summer of its year, B the winter that begins in its year. They
/// change at 0100 UTC on the last Sundays of March and October.
struct Season {
  int year = 1970;
  bool summer = true;

  bool operator==(const Season&) const = default;

  /// First minute of the season, and the first of the next one.
  UtcMinute start() const;
  UtcMinute end() const { return next().start(); }
  Season next() const { return summer ? Season{year, false} : Season{year + 1, true}; }

  /// "A22".
  std::string code() const;
  /// "A22, summer 2022"; "B22, winter 2022/23".
  std::string name() const;
};

Season seasonAt(UtcMinute minute);

/// The season that a file's name speaks of ("sked-a26.csv", "eibi-B22.txt"); none when it does not.
std::optional<Season> seasonOfFileName(std::string_view name);

}  // namespace kelvane::ambrel
