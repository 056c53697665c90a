#pragma once

#include <cstdint>
#include <filesystem>
#include <memory>
#include <optional>
#include <string>

#include "base/safe_file.h"
#include "log/log_table.h"

namespace kelvane {

/// How an attempt to save the log ended.
struct LogSaved {
  enum How {
    Done,
    Failed,            ///< the file is as it was
    ChangedElsewhere,  ///< not tried: another program wrote the file since it was read
  };
  How how = Done;
  std::string reason;  ///< in words, unless Done
};

/// The log's file. Every save is safe against a crash at any moment and keeps the files of the last
/// five ones as backups beside it.
class LogFile {
 public:
  enum class Overwrite {
    Unchanged,  ///< only the file that was read or saved last
    Whatever,   ///< also what another program wrote since then
  };

  explicit LogFile(std::filesystem::path path,
                   std::shared_ptr<FileSteps> steps = std::make_shared<FileSteps>());

  const std::filesystem::path& path() const { return path_; }

  /// What is in the file; nothing where there is none, or where it cannot be read.
  LogTable read();
  /// Why the file that is there could not be read; empty when it could.
  const std::string& problem() const { return problem_; }
  /// How many lines of the file that was read are not, or not whole, in its table.
  std::size_t rejected() const { return rejects_.count; }
  /// The file that those lines were kept in by a save; empty before.
  const std::filesystem::path& rejectFile() const { return rejectFile_; }
  /// Another program has written the file, made or removed it, since it was read or saved.
  bool changedElsewhere() const;

  /// Replaces the file. A file that could not be read, or is read-only, is never replaced; one that
  /// has this content already is left alone.
  LogSaved save(std::string_view content, Overwrite overwrite);

 private:
  struct Stamp {
    std::uintmax_t size;
    std::filesystem::file_time_type written;
    bool operator==(const Stamp&) const = default;
  };

  std::optional<Stamp> stamp() const;
  bool readOnly() const;
  FileResult keepRejects();

  std::filesystem::path path_;
  std::shared_ptr<FileSteps> steps_;
  std::optional<Stamp> known_;
  std::string problem_;
  LogRejects rejects_;
  std::filesystem::path rejectFile_;
};

}  // namespace kelvane
