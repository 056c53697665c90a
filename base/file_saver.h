#pragma once

#include <condition_variable>
#include <deque>
#include <filesystem>
#include <functional>
#include <memory>
#include <mutex>
#include <string>
#include <thread>

#include "base/safe_file.h"

namespace kelvane {

/// Writes files safely on a thread of its own, so that a slow disk holds nobody up.
class FileSaver {
 public:
  /// Hears how a write ended, on the saver's thread. Where there is no memory for that, it is
  /// called again a little later.
  using Ended = std::function<void(const Result<>&)>;

  explicit FileSaver(std::shared_ptr<FileSteps> steps = std::make_shared<FileSteps>());
  /// Returns when everything is written.
  ~FileSaver();
  FileSaver(const FileSaver&) = delete;
  FileSaver& operator=(const FileSaver&) = delete;

  /// What is to be done with a file, on the saver's thread.
  using Work = std::function<Result<>(FileSteps&)>;
  /// Work that waits for the same file is not done any more: this one takes its place.
  void change(const std::filesystem::path& path, Work work, Ended ended = {});
  /// Writes this content safely.
  void save(const std::filesystem::path& path, std::string content, Ended ended = {});
  FileSteps& steps() { return *steps_; }
  /// Returns when everything that was given has been written, or could not be.
  void finish();

 private:
  struct Job {
    std::filesystem::path path;
    Work work;
    Ended ended;
  };

  void run();
  void tell(const Job& job, const Result<>& result);

  std::shared_ptr<FileSteps> steps_;
  std::mutex mutex_;
  std::condition_variable changed_;
  std::deque<Job> waiting_;
  bool writing_ = false;
  bool closing_ = false;
  std::thread thread_;  ///< started by the first save
};

}  // namespace kelvane
