#pragma once

#include <cstdio>
#include <exception>
#include <stdexcept>
#include <string>

namespace kelvane::bench {

/// One figure: what was measured, and what it is compared with, in the same unit.
struct Row {
  std::string name;
  double value = 0;
  const char* unit = "";
  std::string against{};  ///< empty where there is nothing to compare with
  double baseline = 0;
  double goal = 0;  ///< the most that the ratio should be; 0 where none is set
};

/// A number with three or four digits that count.
inline std::string shortNumber(double number) {
  char text[32];
  const int places = number >= 100 ? 0 : number >= 10 ? 1 : number >= 0.1 ? 2 : 4;
  std::snprintf(text, sizeof text, "%.*f", places, number);
  return text;
}

/// Writes the row as a line of fields between tabs: name, value with unit, against, baseline with
/// unit, ratio, goal. Whoever collects the lines aligns them.
inline void print(const Row& row) {
  const auto withUnit = [&row](double number) { return shortNumber(number) + " " + row.unit; };
  const bool compared = !row.against.empty();
  std::printf("%s\t%s\t%s\t%s\t%s\t%s\n", row.name.c_str(), withUnit(row.value).c_str(),
              compared ? row.against.c_str() : "-", compared ? withUnit(row.baseline).c_str() : "-",
              compared ? shortNumber(row.value / row.baseline).c_str() : "-",
              row.goal > 0 ? shortNumber(row.goal).c_str() : "-");
  std::fflush(stdout);
}

/// Ends the benchmark when something that it measures did not happen: a figure of nothing would
/// look splendid. Inside `measure`.
inline void must(bool happened, const std::string& what) {
  if (!happened) throw std::runtime_error(what);
}

/// Runs a benchmark; the answer is for main. What it started is ended also when it fails.
template <class Work>
int measure(Work work) {
  try {
    work();
    return 0;
  } catch (const std::exception& failure) {
    std::fprintf(stderr, "It did not happen: %s.\n", failure.what());
    return 1;
  }
}

}  // namespace kelvane::bench
