#include "log/log_file.h"

#include "base/backup_file.h"
#include "base/code_page.h"
#include "base/encoding.h"

namespace kelvane {

namespace fs = std::filesystem;

namespace {

/// Some three million records.
constexpr std::size_t kLargestLog = 256'000'000;

}  // namespace

LogFile::LogFile(fs::path path, std::shared_ptr<FileSteps> steps)
    : path_(std::move(path)), steps_(std::move(steps)) {}

std::optional<LogFile::Stamp> LogFile::stamp() const {
  std::error_code missing;
  const auto written = fs::last_write_time(path_, missing);
  if (missing) return std::nullopt;
  const auto size = fs::file_size(path_, missing);
  return Stamp{missing ? 0 : size, written};
}

bool LogFile::changedElsewhere() const { return stamp() != known_; }

LogTable LogFile::read() {
  // Before the content: what is written in between counts as changed.
  known_ = stamp();
  rejects_ = {};
  rejectFile_.clear();
  auto content = readFile(path_, kLargestLog, &problem_);
  if (!content) return {};
  problem_.clear();
  if (content->starts_with(kUtf8Mark))
    content = toCodePage(std::string_view(*content).substr(kUtf8Mark.size()));
  return LogTable(std::move(*content), rejects_);
}

/// To swap a file in succeeds on some systems even where the old one is not to be written.
bool LogFile::readOnly() const {
  std::error_code unknown;
  const fs::perms permissions = fs::status(path_, unknown).permissions();
  return !unknown && (permissions & fs::perms::owner_write) == fs::perms::none;
}

FileResult LogFile::keepRejects() {
  if (rejects_.lines.empty()) return {};
  for (int number = 1;; ++number) {
    fs::path file = path_.parent_path() / path_.stem();
    file += ".rejected-" + std::to_string(number);
    file += path_.extension();
    std::error_code unknown;
    const bool taken = fs::exists(fs::symlink_status(file, unknown));
    // A save that was killed may have kept them already.
    if (taken && !hasContent(file, rejects_.lines)) continue;
    const FileResult kept = taken ? FileResult{} : writeFileSafely(file, rejects_.lines, *steps_);
    if (!kept) return kept;
    rejectFile_ = file;
    rejects_.lines.clear();
    return {};
  }
}

LogSaved LogFile::save(std::string_view content, Overwrite overwrite) {
  if (!problem_.empty()) return {LogSaved::Failed, problem_};
  if (overwrite == Overwrite::Unchanged && changedElsewhere())
    return {LogSaved::ChangedElsewhere, pathText(path_) + " was changed by another program"};
  if (hasContent(path_, content)) return {};
  if (readOnly()) return {LogSaved::Failed, pathText(path_) + " is read-only"};
  FileResult written = keepRejects();
  if (written) written = writeKeepingBackups(path_, content, *steps_);
  if (!written) return {LogSaved::Failed, written.reason};
  known_ = stamp();
  return {};
}

}  // namespace kelvane
