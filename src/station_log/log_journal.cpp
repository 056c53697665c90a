#include "station_log/log_journal.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <cstring>
#include <optional>
#include <system_error>
#include <utility>

#include "base/text.h"

namespace kelvane {

namespace fs = std::filesystem;

namespace {

// An entry is a line: its number, a letter for what it is, a checksum, and the text.
constexpr char kAddedEntry = '+', kRemovedEntry = '-', kSavedEntry = '=', kClearedEntry = '!';
constexpr int kMostJournals = 16;
constexpr std::size_t kLargestJournal = 256'000'000;

fs::path journalName(const fs::path& log, int number) {
  fs::path file = log.parent_path() / log.stem();
  file += ".journal-" + std::to_string(number);
  return file += log.extension();
}

fs::path lockName(const fs::path& journal) {
  fs::path file = journal;
  return file += ".lock";
}

bool isFile(const fs::path& file) {
  std::error_code unknown;
  return fs::exists(fs::symlink_status(file, unknown));
}

std::uint64_t stirred(std::uint64_t hash) {
  hash *= 0x9E3779B97F4A7C15u;
  return hash ^ (hash >> 29);
}

/// Tells contents apart; whole logs are put through it in a moment.
std::uint64_t fingerprint(std::string_view text) {
  std::uint64_t hash = stirred(text.size() + 1);
  for (; text.size() >= 8; text.remove_prefix(8)) {
    std::uint64_t eight;
    std::memcpy(&eight, text.data(), sizeof eight);
    hash = stirred(hash ^ eight);
  }
  for (const char c : text) hash = stirred(hash ^ static_cast<unsigned char>(c));
  return hash;
}

std::string hex(std::uint64_t number) {
  std::array<char, 17> digits;
  std::snprintf(digits.data(), digits.size(), "%016llx", static_cast<unsigned long long>(number));
  return digits.data();
}

/// What the checksum is of.
std::string entryHead(std::uint64_t number, char kind) {
  return std::to_string(number) + ' ' + kind + ' ';
}

std::string journalEntry(std::uint64_t number, char kind, std::string_view text) {
  const std::string head = entryHead(number, kind);
  return head + hex(fingerprint(head + std::string(text))) + ' ' + std::string(text) + "\r\n";
}

struct JournalEntry {
  std::uint64_t number = 0;
  char kind = 0;
  std::string_view text;
};

/// None for what a write that was broken off left.
std::optional<JournalEntry> readEntry(std::string_view line) {
  std::uint64_t number = 0;
  while (!line.empty() && isDigit(line.front())) {
    number = number * 10 + static_cast<std::uint64_t>(line.front() - '0');
    line.remove_prefix(1);
  }
  constexpr std::size_t kTextAt = 3 + 16 + 1;
  if (line.size() < kTextAt) return std::nullopt;
  const JournalEntry entry{number, line[1], line.substr(kTextAt)};
  const std::string head = entryHead(number, entry.kind);
  const std::string whole = head + std::string(entry.text);
  if (line.substr(3, 16) != hex(fingerprint(whole))) return std::nullopt;
  return entry;
}

/// The entries of a journal, each once: one that was written twice counts the first time.
std::vector<JournalEntry> readEntries(std::string_view text) {
  std::vector<JournalEntry> entries;
  std::uint64_t newest = 0;
  while (!text.empty()) {
    const std::size_t end = text.find('\n');
    std::string_view line = text.substr(0, end);
    text.remove_prefix(end == std::string_view::npos ? text.size() : end + 1);
    if (line.ends_with('\r')) line.remove_suffix(1);
    const auto entry = readEntry(line);
    if (!entry || entry->number <= newest) continue;
    newest = entry->number;
    entries.push_back(*entry);
  }
  return entries;
}

}  // namespace

LogJournal::LogJournal(fs::path log, std::shared_ptr<FileSteps> steps)
    : log_(std::move(log)), steps_(std::move(steps)) {}

bool LogJournal::anyThere(const fs::path& log) {
  for (int number = 1; number <= kMostJournals; ++number)
    if (isFile(journalName(log, number))) return true;
  return false;
}

std::vector<std::unique_ptr<LogJournal>> LogJournal::left(const fs::path& log,
                                                          const std::shared_ptr<FileSteps>& steps) {
  std::vector<std::unique_ptr<LogJournal>> journals;
  for (int number = 1; number <= kMostJournals; ++number) {
    const fs::path file = journalName(log, number);
    auto journal = std::make_unique<LogJournal>(log, steps);
    // Its owner may have ended, and cleared it, before the lock was free.
    if (!isFile(file) || !journal->lock_.acquire(lockName(file)) || !isFile(file)) continue;
    journal->file_ = file;
    journal->endMayBeCut_ = true;
    journals.push_back(std::move(journal));
  }
  return journals;
}

/// Makes a journal one's own.
Result<> LogJournal::take() {
  if (!file_.empty()) return {};
  Result<> taken = Failure{"too many journals"};
  for (int number = 1; number <= kMostJournals; ++number) {
    const fs::path file = journalName(log_, number);
    if (isFile(file)) continue;
    taken = lock_.acquire(lockName(file));
    if (taken && isFile(file)) lock_.release();
    if (!lock_.owned()) continue;
    file_ = file;
    return {};
  }
  return Failure{"Cannot write beside " + pathText(log_) + ": " + taken.reason()};
}

Result<> LogJournal::keep(std::span<const LogChange> changes) {
  const std::lock_guard guard(mutex_);
  for (const LogChange& change : changes)
    unwritten_ += journalEntry(
        ++number_, change.what == LogChange::Added ? kAddedEntry : kRemovedEntry, change.line);
  return writeOut();
}

Result<> LogJournal::write(char kind, std::string_view text) {
  unwritten_ += journalEntry(++number_, kind, text);
  return writeOut();
}

Result<> LogJournal::writeOut() {
  if (unwritten_.empty()) return {};
  Result<> result = take();
  if (!result) return result;
  const std::string text = (endMayBeCut_ ? "\r\n" : "") + unwritten_;
  endMayBeCut_ = true;
  result = retryWhileHeld(*steps_, [&] { return steps_->append(file_, text); });
  if (result) result = retryWhileHeld(*steps_, [&] { return steps_->flush(file_); });
  if (!result) return Failure{"Cannot write " + pathText(file_) + ": " + result.reason()};
  endMayBeCut_ = false;
  unwritten_.clear();
  return {};
}

Result<> LogJournal::read(std::string_view logFile, LogChanges& changes) {
  const FileReading reading = readWhenFree(file_, kLargestJournal, *steps_);
  if (reading.how == FileReading::Missing) return {};
  if (reading.how != FileReading::Whole) return Failure{reading.reason};
  const auto entries = readEntries(reading.content);
  if (!entries.empty()) number_ = std::max(number_, entries.back().number);
  std::size_t from = 0;
  for (std::size_t i = 0; i < entries.size(); ++i) {
    const bool saved =
        entries[i].kind == kSavedEntry && entries[i].text == hex(fingerprint(logFile));
    if (saved || entries[i].kind == kClearedEntry) from = i + 1;
  }
  for (std::size_t i = from; i < entries.size(); ++i) {
    const char kind = entries[i].kind;
    if (kind == kAddedEntry || kind == kRemovedEntry)
      changes.note({kind == kAddedEntry ? LogChange::Added : LogChange::Removed,
                    std::string(entries[i].text)});
  }
  return {};
}

Result<> LogJournal::markSaved(std::string_view logFile) {
  const std::lock_guard guard(mutex_);
  if (file_.empty() || !isFile(file_)) return {};
  // What is not there yet is in that file.
  unwritten_.clear();
  return write(kSavedEntry, hex(fingerprint(logFile)));
}

Result<> LogJournal::clear() {
  const std::lock_guard guard(mutex_);
  unwritten_.clear();
  if (file_.empty() || !isFile(file_)) return {};
  steps_->remove(file_);
  if (isFile(file_)) return write(kClearedEntry, {});
  endMayBeCut_ = false;
  file_.clear();
  lock_.release();
  return {};
}

}  // namespace kelvane
