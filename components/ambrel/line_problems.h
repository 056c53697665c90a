#pragma once

#include <cstddef>
#include <string>
#include <vector>

namespace kelvane::ambrel {

/// A line of a list that could not be used, and why.
struct LineProblem {
  std::size_t line = 0;  ///< from 1
  std::string reason;
};

/// How many lines of a list could not be used; the first few of them in words.
struct LineProblems {
  static constexpr std::size_t kTold = 10;

  std::size_t count = 0;
  std::vector<LineProblem> first;

  void add(std::size_t line, std::string reason);

  /// Adds those of the lines that follow; the first of them is the line after `lines`.
  void append(std::size_t lines, const LineProblems& more);

  /// "3 lines could not be read. Line 5: ... Line 9: ..."; empty when there is none.
  std::string text() const;
};

}  // namespace kelvane::ambrel
