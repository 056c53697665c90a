#include "station_log/log_file.h"

#include <system_error>
#include <utility>

#include "base/backup_file.h"

namespace kelvane {

namespace fs = std::filesystem;

namespace {

/// Some three million records.
constexpr std::size_t kLargestLog = 256'000'000;

}  // namespace

LogFile::LogFile(fs::path path, std::shared_ptr<FileSteps> steps)
    : path_(std::move(path)), steps_(std::move(steps)), journal_(path_, steps_) {}

std::optional<LogFile::Stamp> LogFile::stamp() const {
  std::error_code missing;
  const auto written = fs::last_write_time(path_, missing);
  if (missing) return std::nullopt;
  const auto size = fs::file_size(path_, missing);
  return Stamp{missing ? 0 : size, written};
}

bool LogFile::changedElsewhere() const { return stamp() != known_; }

/// The file as it is now, which is the one that is known from then on.
std::optional<std::string> LogFile::content() {
  // Before the content: what is written in between counts as changed.
  known_ = stamp();
  rejects_ = {};
  rejectFile_.clear();
  FileReading reading = readWhenFree(path_, kLargestLog, *steps_);
  readable_ = resultOf(reading.reason);
  if (reading.how != FileReading::Whole) return std::nullopt;
  return std::move(reading.content);
}

LogTable LogFile::read() {
  leftoverWords_.clear();
  if (mayHaveLeftovers()) {
    FileLock lock;
    Journals left;
    if (lockFor(lock)) left = LogJournal::left(path_, steps_);
    if (!left.empty()) bringIn(left);
  }
  auto file = content();
  return file ? LogTable(std::move(*file), rejects_) : LogTable();
}

/// One program at a time.
Result<> LogFile::lockFor(FileLock& lock) {
  fs::path file = path_;
  file += ".lock";
  const Result<> sole = retryWhileHeld(*steps_, [&] { return lock.acquire(file); });
  if (!sole) return Failure{"Cannot write " + pathText(path_) + ": " + sole.reason()};
  return {};
}

/// Journals that cannot be read now are left for another time.
LogFile::TakenOver LogFile::takeOver(Journals& left, LogTable& log, const std::string& file) {
  TakenOver result;
  std::erase_if(left, [&](const auto& journal) {
    LogChanges changes;
    if (!journal->read(file, changes)) return true;
    log.apply(changes);
    result.records += changes.added().size();
    result.changed = result.changed || !changes.empty();
    return false;
  });
  return result;
}

void LogFile::bringIn(Journals& left) {
  const auto file = content();
  if (!readable_) return;
  LogTable log(file.value_or(""), rejects_);
  const TakenOver came = takeOver(left, log, file.value_or(""));
  if (!came.changed) {
    for (const auto& journal : left) journal->clear();
    return;
  }
  const Result<> saved = replace(log.content(), left);
  if (!saved)
    leftoverWords_ = "Changes that another program left are not in the log yet: " + saved.reason();
  else
    leftoverWords_ = std::to_string(came.records) +
                     (came.records == 1 ? " record was" : " records were") +
                     " recovered from a program that ended without saving.";
}

/// To swap a file in succeeds on some systems even where the old one is not to be written.
bool LogFile::readOnly() const {
  std::error_code unknown;
  const fs::perms permissions = fs::status(path_, unknown).permissions();
  return !unknown && (permissions & fs::perms::owner_write) == fs::perms::none;
}

Result<> LogFile::keepRejects() {
  if (rejects_.lines.empty()) return {};
  for (int number = 1;; ++number) {
    fs::path file = path_.parent_path() / path_.stem();
    file += ".rejected-" + std::to_string(number);
    file += path_.extension();
    std::error_code unknown;
    const bool taken = fs::exists(fs::symlink_status(file, unknown));
    // A save that was killed may have kept them already.
    if (taken && !hasContent(file, rejects_.lines)) continue;
    const Result<> kept = taken ? Result<>() : writeFileSafely(file, rejects_.lines, *steps_);
    if (!kept) return kept;
    rejectFile_ = file;
    rejects_.lines.clear();
    return {};
  }
}

Result<> LogFile::replace(const std::string& content, Journals& left) {
  if (!hasContent(path_, content)) {
    if (readOnly()) return Failure{pathText(path_) + " is read-only"};
    Result<> done = keepRejects();
    if (done) done = journal_.markSaved(content);
    for (const auto& journal : left)
      if (done) done = journal->markSaved(content);
    if (done) done = writeKeepingBackups(path_, content, *steps_);
    if (!done) return done;
  }
  known_ = stamp();
  for (const auto& journal : left) journal->clear();
  return {};
}

LogSaved LogFile::save(const LogTable& log, const LogChanges& changes) {
  if (!readable_) return readable_.failure();
  FileLock lock;
  if (const Result<> sole = lockFor(lock); !sole) return sole.failure();
  Journals left;
  if (mayHaveLeftovers()) left = LogJournal::left(path_, steps_);
  std::shared_ptr<LogTable> merged;
  if (changedElsewhere() || !left.empty()) {
    auto file = content();
    if (!readable_) return readable_.failure();
    merged = std::make_shared<LogTable>(file.value_or(""), rejects_);
    // A file that is gone is not one that another program emptied record by record.
    LogRejects none;
    if (merged->size() == 0)
      *merged = LogTable(log.content(), none);
    else
      merged->apply(changes);
    takeOver(left, *merged, file.value_or(""));
  }
  const Result<> replaced = replace(merged ? merged->content() : log.content(), left);
  if (!replaced) return replaced.failure();
  journal_.clear();
  return merged;
}

}  // namespace kelvane
