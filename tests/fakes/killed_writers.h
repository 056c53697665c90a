#pragma once

#include <string>

#include <sys/types.h>

#include "base/time.h"
#include "tests/fakes/temp_folder.h"
#include "tests/fakes/writing_process.h"

namespace kelvane::fakes {

/// Processes that write an instance's files side by side, and are killed at any moment. What one of
/// them knew to be on the disk must be there afterwards, whole.
class KilledWriters {
 public:
  /// Two processes write; one is killed after so long, the other a moment later.
  void kill(milliseconds after);
  /// What is wrong with what they left, from the first kill on.
  WrittenFiles::Found look() const { return files_.look(nullptr); }
  /// How much was known to be on the disk.
  int written() const { return files_.written(); }

 private:
  struct Child {
    pid_t process;
    int pipe;
  };

  Child begin(int which);
  void end(const Child& child);

  TempFolder folder_;
  WrittenFiles files_{folder_.path()};
  int round_ = 0;
};

}  // namespace kelvane::fakes
