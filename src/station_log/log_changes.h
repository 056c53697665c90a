#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace kelvane {

/// A record that came into a log or left it; a record that was changed left and came. The line is
/// the record's, as LogTable::lineText() gives it.
struct LogChange {
  enum What { Added, Removed };
  What what;
  std::string line;
};

/// What was done to a log since its file was written, put together: a record that came and left
/// again is none.
class LogChanges {
 public:
  void note(const LogChange& change);
  bool empty() const { return open_ == 0; }
  /// The lines that came, in their order.
  std::vector<std::string> added() const;
  /// The lines that left, each with how often.
  std::unordered_map<std::string, std::size_t> removed() const;

 private:
  std::unordered_map<std::string, long> balance_;  ///< of each line: how often more it came
  std::vector<std::string> order_;                 ///< every line that came
  std::size_t open_ = 0;                           ///< lines whose balance is not 0
};

}  // namespace kelvane
