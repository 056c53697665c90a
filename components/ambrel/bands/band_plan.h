#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "contract/types.h"

namespace kelvane::ambrel {

/// One stretch of a band plan. `end` is the first Hz that no longer belongs to it; `step` and
/// `filter` (a bandwidth) are in Hz, `mode` is numbered as in contract/modes.h.
struct BandEntry {
  std::string name;
  Hz start = 0;
  Hz end = 0;
  Hz step = 100;
  Setting mode = 0;
  Setting filter = 0;
};

/// What every plan must cover, in Hz; beyond it a plan may go as far as it likes.
inline constexpr Hz kPlanStart = 9'000;
inline constexpr Hz kPlanEnd = 30'000'000;

/// A region's band plan: entries in rising order that touch one another and together hold every
/// frequency from 0 Hz to the largest that 32 bits can say.
class BandPlan {
 public:
  /// `entries` must be in order and free of gaps between `kPlanStart` and `kPlanEnd`, as
  /// `readBandPlan` sees to; general entries are added below the first and above the last.
  explicit BandPlan(std::vector<BandEntry> entries);

  std::size_t size() const { return entries_.size(); }
  const BandEntry& operator[](std::size_t place) const { return entries_[place]; }

  /// Place of the entry that holds the frequency; a negative one counts as 0 Hz.
  std::size_t at(Hz frequency) const;

 private:
  std::vector<BandEntry> entries_;
};

/// A band plan read from text: the plan, or what is wrong with the text in words, line by line.
struct BandPlanReading {
  std::optional<BandPlan> plan;
  std::vector<std::string> problems;
};

/// Reads a plan from its text form, which the shipped files describe in their heads. A line that
/// cannot be read, a gap and an overlap are each a problem, and with a problem there is no plan.
BandPlanReading readBandPlan(std::string_view text);

/// A coarse plan for when no file can be read.
BandPlan builtInBandPlan();

}  // namespace kelvane::ambrel
