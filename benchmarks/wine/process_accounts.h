#pragma once

#include <string>

namespace kelvane::bench {

/// What the host system's accounting says of a process: through Windows' own calls Wine tells
/// another process's times wrongly.
class ProcessAccounts {
 public:
  /// Of the process with this id of the host's.
  explicit ProcessAccounts(int hostId) : hostId_(hostId) {}
  /// Of the one process of this program that was started with this word.
  static ProcessAccounts ofCommand(const std::string& program, const std::string& word);
  /// Of the process whose id the environment variable holds.
  static ProcessAccounts ofVariable(const wchar_t* variable);

  /// Processor time so far, user's and system's, in seconds.
  double seconds() const;

  struct Memory {
    double resident = 0;  ///< what lies in memory, MB
    double own = 0;       ///< what of it no other process shares, MB
    double made = 0;      ///< what of it stands in no file: what the process made itself, MB
  };
  Memory memory() const;

 private:
  std::string read(const char* file) const;

  int hostId_;
};

}  // namespace kelvane::bench
