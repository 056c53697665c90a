#pragma once

#include <cstdint>
#include <filesystem>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "base/safe_file.h"
#include "station_log/log_journal.h"
#include "station_log/log_table.h"

namespace kelvane {

/// What the log became by a save, where other programs had changed the file or left changes behind;
/// none where it is as it was given. A failure says why the file is as it was.
using LogSaved = Result<std::shared_ptr<LogTable>>;

/// The log's file, which programs share, and beside it their journals. Every save is safe against a
/// crash at any moment and keeps the files of the last five ones as backups. It does to the file as
/// it is then what this program changed, so that no program undoes what another one did; records
/// that both changed are there in both forms.
class LogFile {
 public:
  explicit LogFile(std::filesystem::path path,
                   std::shared_ptr<FileSteps> steps = std::make_shared<FileSteps>());

  const std::filesystem::path& path() const { return path_; }

  /// What is in the file; nothing where there is none, or where it cannot be read. What killed
  /// programs left in their journals is brought into the file first.
  LogTable read();
  /// There are journals, and perhaps such ones.
  bool mayHaveLeftovers() const { return LogJournal::anyThere(path_); }
  /// In words what the last read() did with journals of killed programs; mostly empty.
  const std::string& leftoverWords() const { return leftoverWords_; }
  /// Whether the file, where there is one, could be read the last time.
  const Result<>& readable() const { return readable_; }
  /// How many lines of the file that was read are not, or not whole, in its table.
  std::size_t rejected() const { return rejects_.count; }
  /// The file that those lines were kept in by a save; empty before.
  const std::filesystem::path& rejectFile() const { return rejectFile_; }
  /// Another program has written the file, made or removed it, since it was read or saved.
  bool changedElsewhere() const;

  /// Puts changes on the disk that are not saved yet, and what could not be put there before; may
  /// be called beside everything else.
  Result<> keep(std::span<const LogChange> changes) { return journal_.keep(changes); }
  /// Nothing that was kept is to be in the log.
  Result<> drop() { return journal_.clear(); }

  /// Replaces the file by the log, which has had these changes since it was read or saved. A file
  /// that cannot be read, or is read-only, is never replaced; one that has this content already is
  /// left alone. What was kept is forgotten then: the file has it.
  LogSaved save(const LogTable& log, const LogChanges& changes);

 private:
  struct Stamp {
    std::uintmax_t size;
    std::filesystem::file_time_type written;
    bool operator==(const Stamp&) const = default;
  };
  using Journals = std::vector<std::unique_ptr<LogJournal>>;

  std::optional<Stamp> stamp() const;
  Result<> lockFor(FileLock& lock);
  std::optional<std::string> content();
  /// What came of other programs' journals.
  struct TakenOver {
    std::size_t records = 0;  ///< that came
    bool changed = false;
  };
  TakenOver takeOver(Journals& left, LogTable& log, const std::string& file);
  void bringIn(Journals& left);
  bool readOnly() const;
  Result<> keepRejects();
  Result<> replace(const std::string& content, Journals& left);

  std::filesystem::path path_;
  std::shared_ptr<FileSteps> steps_;
  LogJournal journal_;
  std::optional<Stamp> known_;
  Result<> readable_;
  std::string leftoverWords_;
  LogRejects rejects_;
  std::filesystem::path rejectFile_;
};

}  // namespace kelvane
