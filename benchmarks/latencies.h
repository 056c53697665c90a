#pragma once

#include <algorithm>
#include <cmath>
#include <string>
#include <vector>

#include "benchmarks/table.h"

namespace kelvane::bench {

/// Times of one and the same thing, done many times over; all in one unit.
class Latencies {
 public:
  void add(double time) {
    times_.insert(std::upper_bound(times_.begin(), times_.end(), time), time);
  }
  std::size_t count() const { return times_.size(); }
  double median() const { return part(0.5); }
  double worst() const { return times_.back(); }
  /// The time that this part of all does not exceed, 0 to 1.
  double part(double share) const {
    const auto place = std::ceil(share * static_cast<double>(times_.size())) - 1;
    return times_[static_cast<std::size_t>(std::max(place, 0.0))];
  }

  /// Three rows: median, 99.9th percentile, worst. The goal is what the 99.9th percentile is
  /// compared with; 0 for none.
  void printRows(const std::string& name, const char* unit, const std::string& against,
                 double goal) const {
    print({name + ", median", median(), unit, against, goal});
    print({name + ", 99.9th percentile", part(0.999), unit, against, goal, goal > 0 ? 1.0 : 0});
    print({name + ", worst of " + std::to_string(count()), worst(), unit, against, goal});
  }

 private:
  std::vector<double> times_;  ///< in order
};

}  // namespace kelvane::bench
