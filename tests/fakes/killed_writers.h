#pragma once

#include <map>
#include <string>

#include <sys/types.h>

#include "base/time.h"
#include "tests/fakes/temp_folder.h"

namespace kelvane::fakes {

/// Processes that write an instance's channels, receivers, log and lists side by side, and are
/// killed at any moment. What one of them knew to be on the disk must be there afterwards, whole.
class KilledWriters {
 public:
  KilledWriters();

  /// Two processes write; one is killed after so long, the other a moment later.
  void kill(milliseconds after);
  /// What is wrong with what they left, from the first kill on.
  struct Found {
    int lost = 0;  ///< was on the disk, and is not there
    int torn = 0;  ///< files that are not whole, and records that are there twice
  };
  Found look() const;
  /// How much was known to be on the disk.
  int written() const { return written_; }

 private:
  struct Child {
    pid_t process;
    int pipe;
  };

  Child begin(int which);
  void end(const Child& child);
  void note(const std::string& line);
  void lookAtChannels(Found& found) const;
  void lookAtReceivers(Found& found) const;
  void lookAtLog(Found& found) const;
  void lookAtLists(Found& found) const;

  TempFolder folder_;
  int round_ = 0;
  int written_ = 0;
  std::map<std::string, int> newest_;  ///< of what is written again and again
  std::map<int, int> logged_;
};

}  // namespace kelvane::fakes
