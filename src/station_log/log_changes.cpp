#include "station_log/log_changes.h"

#include <algorithm>

namespace kelvane {

void LogChanges::note(const LogChange& change) {
  long& balance = balance_[change.line];
  const bool before = balance != 0;
  if (change.what == LogChange::Added) {
    ++balance;
    order_.push_back(change.line);
  } else {
    --balance;
  }
  if (before != (balance != 0)) before ? --open_ : ++open_;
}

std::vector<std::string> LogChanges::added() const {
  auto left = balance_;
  std::vector<std::string> lines;
  // What came last stays: earlier copies are those that left again.
  for (auto line = order_.rbegin(); line != order_.rend(); ++line)
    if (left[*line]-- > 0) lines.push_back(*line);
  std::ranges::reverse(lines);
  return lines;
}

std::unordered_map<std::string, std::size_t> LogChanges::removed() const {
  std::unordered_map<std::string, std::size_t> lines;
  for (const auto& [line, balance] : balance_)
    if (balance < 0) lines[line] = static_cast<std::size_t>(-balance);
  return lines;
}

}  // namespace kelvane
