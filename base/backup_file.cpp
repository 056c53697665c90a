#include "base/backup_file.h"

#include <string>
#include <string_view>
#include <system_error>

namespace kelvane {

namespace {

std::filesystem::path backupOf(std::filesystem::path file, int generation) {
  file += generation == 1 ? ".bak" : ".bak" + std::to_string(generation);
  return file;
}

bool isThere(const std::filesystem::path& file) {
  std::error_code unknown;
  return std::filesystem::exists(std::filesystem::symlink_status(file, unknown));
}

bool isSame(const std::filesystem::path& file, const std::filesystem::path& other) {
  namespace fs = std::filesystem;
  std::error_code none;
  if (fs::equivalent(file, other, none)) return true;
  const auto size = fs::file_size(file, none);
  if (none || fs::file_size(other, none) != size || none) return false;
  const auto content = readFile(file, size);
  return content && hasContent(other, *content);
}

Result<> move(const std::filesystem::path& from, const std::filesystem::path& to) {
  if (!isThere(from)) return {};
  std::error_code error;
  std::filesystem::rename(from, to, error);
  if (error) return Failure{systemWords(error)};
  return {};
}

/// Frees the first backup name by moving each backup to the next one, as far as there is no name
/// free before. A backup that would be too many is replaced.
template <class Move>
Result<> makeRoom(const std::filesystem::path& file, int generations, Move moveTo) {
  int free = 1;
  while (free < generations && isThere(backupOf(file, free))) ++free;
  for (int to = free; to > 1; --to) {
    const Result<> moved = moveTo(backupOf(file, to - 1), backupOf(file, to));
    if (!moved) return moved;
  }
  return {};
}

}  // namespace

Result<> moveToBackup(const std::filesystem::path& file, int generations) {
  // Nothing to back up is no reason to give the oldest backup up.
  if (!isThere(file)) return {};
  const Result<> room = makeRoom(file, generations, move);
  return room ? move(file, backupOf(file, 1)) : room;
}

void takeBackupBack(const std::filesystem::path& file) {
  if (!isThere(file)) move(backupOf(file, 1), file);
}

Result<> writeKeepingBackups(const std::filesystem::path& file, std::string_view content,
                             FileSteps& steps, int generations) {
  const std::filesystem::path newest = backupOf(file, 1);
  return writeFileSafely(file, content, steps, [&] {
    // After an attempt that came this far and then failed, the file is its own backup already.
    if (!isThere(file) || isSame(file, newest)) return Result<>();
    const Result<> room = makeRoom(file, generations, [&](const auto& from, const auto& to) {
      return retryWhileHeld(steps, [&] { return steps.swapIn(from, to); });
    });
    if (!room) return room;
    return retryWhileHeld(steps, [&] { return steps.secondName(file, newest); });
  });
}

}  // namespace kelvane
