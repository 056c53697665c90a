#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <utility>
#include <vector>

#include "components/ambrel/record.h"
#include "components/ambrel/schedule/season.h"

namespace kelvane::ambrel {

/// Works out what a schedule's columns of days and dates come to. The same few are met again and
/// again, and are worked out once.
class RuleBook {
 public:
  /// For a schedule of that season.
  explicit RuleBook(Season season) : season_(season) { rules_.emplace_back(); }

  struct Reading {
    bool valid = false;        ///< else the dates are none
    bool daysUnknown = false;  ///< the days were not understood
    bool irregular = false;
    std::uint8_t weekdays = DayRule::kAllWeekdays;
    std::uint32_t rule = 0;  ///< place in `rules`; 0 where weekdays say it all
  };

  /// `start` and `stop` are "DDMM", "[MMYY]" or both; the brackets tell when it was last heard and
  /// bind nothing. Codes 1 to 5 mean dates of every year, the others those nearest to the season.
  Reading read(std::string_view days, std::string_view start, std::string_view stop,
               std::uint8_t persistence);

  /// The rules that readings refer to; the first is never referred to.
  std::vector<FurtherRule> takeRules() { return std::move(rules_); }

 private:
  /// The columns' bytes, where they are as few as they mostly are.
  struct Columns {
    std::uint64_t days = 0;
    std::uint32_t start = 0;
    std::uint32_t stop = 0;
    std::uint64_t persistence = 0;

    bool operator==(const Columns&) const = default;
  };
  struct Hash {
    std::size_t operator()(const Columns& columns) const;
  };

  Reading work(std::string_view days, std::string_view start, std::string_view stop,
               std::uint8_t persistence);

  Season season_;
  std::vector<FurtherRule> rules_;
  std::unordered_map<Columns, Reading, Hash> known_;
  std::unordered_map<std::string, std::optional<DayRule>> days_;  ///< by the column's text

  struct Recent {
    Columns columns;
    Reading reading;
    bool used = false;
  };
  /// Those met last, each where its hash says: found at a look, as most lines repeat one of few.
  std::array<Recent, 128> recent_;
};

}  // namespace kelvane::ambrel
