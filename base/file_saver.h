#pragma once

#include <deque>
#include <filesystem>
#include <functional>
#include <memory>
#include <mutex>
#include <string>

#include "base/background.h"
#include "base/safe_file.h"

namespace kelvane {

/// Writes files safely on a thread of its own, so that a slow disk holds nobody up. Its
/// destructor returns when everything is written.
class FileSaver {
 public:
  /// Hears how a write ended, on the saver's thread; where none can be started, on the caller's.
  /// Where there is no memory for that, it is called again a little later.
  using Ended = std::function<void(const Result<>&)>;

  explicit FileSaver(std::shared_ptr<FileSteps> steps = std::make_shared<FileSteps>());
  /// What is to be done with a file, on the saver's thread.
  using Work = std::function<Result<>(FileSteps&)>;
  /// Work that waits for the same file is not done any more: this one takes its place.
  void change(const std::filesystem::path& path, Work work, Ended ended = {});
  /// Writes this content safely.
  void save(const std::filesystem::path& path, std::string content, Ended ended = {});
  FileSteps& steps() { return *steps_; }
  /// Returns when everything that was given has been written, or could not be.
  void finish() { background_.finish(); }

 private:
  struct Job {
    std::filesystem::path path;
    Work work;
    Ended ended;
  };

  /// An empty job where none waits any more: its turn came, and had no memory to say how it ended.
  Job take(const std::function<bool(const Job&)>& which);
  void writeNext();
  void end(const Job& job, const Result<>& result);

  std::shared_ptr<FileSteps> steps_;
  std::mutex mutex_;
  std::deque<Job> waiting_;  ///< each has its turn on the thread
  Background background_;    ///< last: its jobs use everything above
};

}  // namespace kelvane
