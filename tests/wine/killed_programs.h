#pragma once

#include <windows.h>

#include <memory>
#include <string>

#include "tests/fakes/temp_folder.h"
#include "tests/fakes/writing_process.h"
#include "win32/registry_store.h"

namespace kelvane::wine {

/// Windows processes that write an instance's files and settings side by side, and are killed at
/// any moment. What one of them knew to be kept must be there afterwards, whole.
class KilledPrograms {
 public:
  explicit KilledPrograms(const std::string& instance);
  ~KilledPrograms();

  /// Two processes write; from when both have begun one is killed after so many milliseconds, the
  /// other a moment later. False where one could not be started or ended by itself.
  bool kill(DWORD after);
  /// What is wrong with what they left, from the first kill on.
  fakes::WrittenFiles::Found look() const { return files_.look(&settings_); }
  int written() const { return files_.written(); }

 private:
  struct Program;

  std::unique_ptr<Program> begin(int which) const;
  bool end(Program& program);

  std::string instance_;
  fakes::TempFolder folder_;
  fakes::WrittenFiles files_{folder_.path()};
  win32::RegistryStore settings_;
  int round_ = 0;
};

}  // namespace kelvane::wine
