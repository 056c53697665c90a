#include "levels/level_recorder.h"

#include <algorithm>
#include <fstream>
#include <mutex>
#include <string_view>
#include <system_error>
#include <utility>
#include <vector>

#include "base/folder.h"
#include "levels/level_csv.h"

namespace kelvane {

namespace fs = std::filesystem;

/// What the window's thread and the writing one both know.
struct LevelRecorder::Shared {
  std::mutex mutex;
  std::string failed;       ///< why nothing more is written
  std::size_t waiting = 0;  ///< bytes that are on their way
  fs::path begun;           ///< the file whose end was looked at; of the writing thread alone
};

namespace {

constexpr milliseconds kWritten{1000};
/// A disk that keeps up never has so much waiting for it.
constexpr std::size_t kMostWaiting = 16u << 20;
constexpr std::string_view kPrefix = "levels-", kSuffix = ".csv";

bool isLevelFile(const fs::path& file) {
  const std::string name = pathText(file.filename());
  return name.starts_with(kPrefix) && name.ends_with(kSuffix);
}

/// Cuts what stands behind the last whole line of a file; a program that was killed left it.
void cutPartOfLine(const fs::path& file) {
  std::error_code none;
  const std::uintmax_t size = fs::file_size(file, none);
  if (none || size == 0) return;
  constexpr std::uintmax_t kLongestLine = 4096;
  std::string end(static_cast<std::size_t>(std::min(size, kLongestLine)), '\0');
  {
    std::ifstream in(file, std::ios::binary);
    in.seekg(static_cast<std::streamoff>(size - end.size()));
    if (!in.read(end.data(), static_cast<std::streamsize>(end.size()))) return;
  }
  const auto last = end.find_last_of('\n');
  const std::size_t keep = last == std::string::npos ? 0 : last + 1;
  if (keep < end.size()) fs::resize_file(file, size - (end.size() - keep), none);
}

/// Makes room for more below the limit; false where only `file` itself is left to go.
bool makeRoom(const fs::path& file, std::uintmax_t more, std::uintmax_t limit, FileSteps& steps) {
  std::error_code none;
  std::uintmax_t sum = more;
  std::vector<std::pair<fs::path, std::uintmax_t>> days;
  for (const fs::path& entry : entriesIn(file.parent_path())) {
    if (!isLevelFile(entry)) continue;
    const std::uintmax_t size = fs::file_size(entry, none);
    if (none) continue;
    sum += size;
    if (entry != file) days.emplace_back(entry, size);
  }
  std::ranges::sort(days);
  for (const auto& [day, size] : days) {
    if (sum <= limit) break;
    steps.remove(day);
    sum -= size;
  }
  return sum <= limit;
}

Result<> appendWhole(const fs::path& file, std::string_view lines, FileSteps& steps) {
  std::error_code none;
  const std::uintmax_t before = fs::exists(file, none) ? fs::file_size(file, none) : 0;
  std::string content;
  if (before == 0) content = kLevelCsvHead;
  content += lines;
  Result<> result = retryWhileHeld(steps, [&] { return steps.append(file, content); });
  if (!result) {
    fs::resize_file(file, before, none);
    if (before == 0) steps.remove(file);
  }
  return result;
}

}  // namespace

LevelRecorder::LevelRecorder(Services services, std::uintmax_t limit)
    : services_(std::move(services)), limit_(limit), shared_(std::make_shared<Shared>()) {}

LevelRecorder::~LevelRecorder() { stop(); }

void LevelRecorder::start(Instant now) {
  if (running_) return;
  running_ = true;
  shared_ = std::make_shared<Shared>();
  writing_.start(kWritten, now);
  if (services_.keepAwake) services_.keepAwake(true);
}

void LevelRecorder::stop() {
  if (!running_) return;
  write();
  running_ = false;
  writing_.stop();
  if (services_.keepAwake) services_.keepAwake(false);
}

void LevelRecorder::heard(Index rx, WallTime utc, Hz frequency, Long level) {
  if (!running_) return;
  const std::string day = utcDay(utc);
  if (day != day_) write();
  day_ = day;
  std::string& name = names_[static_cast<std::size_t>(rx)];
  if (name.empty()) name = csvName(services_.name(rx));
  appendLevelLine(lines_, utc, name, frequency, level * 10);
}

void LevelRecorder::tick(Instant now) {
  if (!running_ || !writing_.fired(now)) return;
  std::string why;
  std::size_t waiting = 0;
  {
    const std::lock_guard lock(shared_->mutex);
    why = shared_->failed;
    waiting = shared_->waiting;
  }
  if (why.empty() && waiting > kMostWaiting) why = "The disk does not keep up.";
  if (why.empty())
    write();
  else
    fail(why);
}

void LevelRecorder::fail(const std::string& why) {
  trouble_ = "Levels are not recorded any more: " + why;
  lines_.clear();
  stop();
}

std::string LevelRecorder::takeTrouble() { return std::exchange(trouble_, {}); }

void LevelRecorder::write() {
  if (lines_.empty()) return;
  const fs::path file = services_.folder / (std::string(kPrefix) + day_ + std::string(kSuffix));
  {
    const std::lock_guard lock(shared_->mutex);
    shared_->waiting += lines_.size();
  }
  const auto work = [shared = shared_, file, lines = std::exchange(lines_, {}),
                     limit = limit_](FileSteps& steps) {
    {
      const std::lock_guard lock(shared->mutex);
      shared->waiting -= lines.size();
      if (!shared->failed.empty()) return Result<>();
    }
    Result<> result = steps.makeFolders(file.parent_path());
    if (result && std::exchange(shared->begun, file) != file) cutPartOfLine(file);
    if (result && !makeRoom(file, lines.size() + kLevelCsvHead.size(), limit, steps))
      result = Failure{"their files have reached the limit of " +
                       std::to_string(limit / 1'000'000) + " MB"};
    if (result) result = appendWhole(file, lines, steps);
    if (!result) {
      const std::lock_guard lock(shared->mutex);
      shared->failed = result.reason();
    }
    return result;
  };
  // Each is to be written: a name of its own keeps one from taking another's place.
  services_.saver.change(fs::path(file).concat("#" + std::to_string(++jobs_)), work);
}

}  // namespace kelvane
