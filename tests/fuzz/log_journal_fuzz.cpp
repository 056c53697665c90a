#include "station_log/log_journal.h"

#include <algorithm>

#include "base/text.h"
#include "tests/fakes/temp_folder.h"
#include "tests/fuzz/fuzz_target.h"

namespace {

using namespace kelvane;

/// Holds one file, in memory.
struct MemoryDisk : FileSteps {
  FileReading read(const std::filesystem::path&, std::size_t) override {
    return {FileReading::Whole, content};
  }
  Result<> append(const std::filesystem::path&, std::string_view text) override {
    content += text;
    return {};
  }
  Result<> flush(const std::filesystem::path&) override { return {}; }

  std::string content;
};

using Told = std::pair<std::vector<std::string>, std::unordered_map<std::string, std::size_t>>;
Told told(const LogChanges& changes) { return {changes.added(), changes.removed()}; }

struct Journal {
  Told read() {
    LogChanges changes;
    fuzz::promise(journal.read({}, changes).ok(), "a journal cannot be read");
    return told(changes);
  }

  fakes::TempFolder folder;
  std::shared_ptr<MemoryDisk> disk = std::make_shared<MemoryDisk>();
  LogJournal journal{folder.path() / "scratchpad.txt", disk};
};

LogChange changeOf(std::string_view line) {
  return {line.front() == '-' ? LogChange::Removed : LogChange::Added, std::string(line)};
}

/// A program is killed while it writes: what it kept before comes back, and the entry that was
/// written either whole or not at all.
void tear(Journal& one, std::string_view input) {
  one.disk->content.clear();
  std::vector<LogChange> kept;
  std::vector<std::size_t> ends;
  for (const std::string_view line : split(input, '\n')) {
    if (line.empty()) continue;
    kept.push_back(changeOf(line));
    fuzz::promise(one.journal.keep(std::span(&kept.back(), 1)).ok(), "a change cannot be kept");
    ends.push_back(one.disk->content.size());
  }
  if (kept.empty()) return;
  const auto torn = static_cast<unsigned char>(input.back()) * one.disk->content.size() / 255;
  one.disk->content.resize(torn);
  LogChanges expected;
  std::size_t whole = 0;
  for (; whole < ends.size() && ends[whole] <= torn; ++whole) expected.note(kept[whole]);
  const Told there = one.read();
  if (there == told(expected)) return;
  fuzz::promise(whole < kept.size(), "a whole journal is read as another");
  expected.note(kept[whole]);
  fuzz::promise(there == told(expected), "a change is lost, or one comes that was not kept");
}

}  // namespace

// What a killed program left beside the log.
FUZZ_TARGET(log_journal) {
  static Journal one;
  one.disk->content = input;
  one.read();
  tear(one, input);
}
