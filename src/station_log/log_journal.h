#pragma once

#include <cstdint>
#include <filesystem>
#include <memory>
#include <mutex>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "base/file_lock.h"
#include "base/safe_file.h"
#include "station_log/log_changes.h"

namespace kelvane {

/// What the log's file lacks, on the disk the moment that it is kept: a file beside the log for
/// each program that has the log open. It is the program's own as long as that lives; what a killed
/// one leaves is taken over by the next.
class LogJournal {
 public:
  /// Makes no file before there is something to keep.
  LogJournal(std::filesystem::path log, std::shared_ptr<FileSteps> steps);
  LogJournal(const LogJournal&) = delete;
  LogJournal& operator=(const LogJournal&) = delete;

  /// The journals beside a log that programs left when they ended; nobody else has them meanwhile.
  static std::vector<std::unique_ptr<LogJournal>> left(const std::filesystem::path& log,
                                                       const std::shared_ptr<FileSteps>& steps);
  /// Whether there may be such journals.
  static bool anyThere(const std::filesystem::path& log);

  const std::filesystem::path& file() const { return file_; }

  /// Returns when the changes are on the disk. Those that could not be put there come with the next
  /// ones. May wait for other programs; any thread may call it.
  Result<> keep(std::span<const LogChange> changes);
  /// The changes that a log with this file lacks. Fails where the journal cannot be read now.
  Result<> read(std::string_view logFile, LogChanges& changes);
  /// Notes that what is kept so far is in the log whose file has this content; to be called before
  /// that file gets its name. From then on exactly one of the two holds.
  Result<> markSaved(std::string_view logFile);
  /// Forgets what is kept; the log has it, or the operator dropped it.
  Result<> clear();

 private:
  Result<> take();
  Result<> write(char kind, std::string_view text);
  Result<> writeOut();

  std::filesystem::path log_;
  std::shared_ptr<FileSteps> steps_;
  std::mutex mutex_;
  std::filesystem::path file_;  ///< empty before it is one's own
  FileLock lock_;
  std::uint64_t number_ = 0;  ///< of the newest entry
  std::string unwritten_;     ///< entries that the disk has not, or perhaps not
  bool endMayBeCut_ = false;  ///< the file may end with a part of an entry
};

}  // namespace kelvane
