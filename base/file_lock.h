#pragma once

#include <cstdint>
#include <filesystem>
#include <functional>
#include <optional>
#include <string>

#include "base/safe_file.h"

namespace kelvane {

/// The sole right to something, among all processes that ask for it by the same file. The file
/// stands only while somebody has the right; the system takes it away from a process that ends,
/// however it ends.
class FileLock {
 public:
  FileLock() = default;
  ~FileLock() { release(); }
  FileLock(const FileLock&) = delete;
  FileLock& operator=(const FileLock&) = delete;

  /// One try; makes missing folders. `held` says that another process, or another lock of this
  /// one, has it.
  Result<> acquire(const std::filesystem::path& file);
  void release();
  bool owned() const { return handle_ != kNone; }

 private:
  static constexpr std::intptr_t kNone = -1;

  std::filesystem::path file_;
  std::intptr_t handle_ = kNone;
};

/// What is to become of a file: its new content, none where it stays as it is, or why nothing may
/// be written.
using FileChange = Result<std::optional<std::string>>;
inline const std::nullopt_t kUnchanged = std::nullopt;

/// Changes a file that other processes change too: nobody else does while `change` is given what
/// the file holds now and answers what it is to hold. A file that cannot be read is not written.
/// Waits, as `retryWhileHeld` does, for whoever is in the way.
Result<> changeFile(const std::filesystem::path& path, std::size_t limit, FileSteps& steps,
                    const std::function<FileChange(const FileReading& now)>& change);

}  // namespace kelvane
