#include "base/backup_file.h"

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

FileResult move(const std::filesystem::path& from, const std::filesystem::path& to) {
  if (!isThere(from)) return {};
  std::error_code error;
  std::filesystem::rename(from, to, error);
  return error ? FileResult{false, systemWords(error)} : FileResult{};
}

}  // namespace

FileResult moveToBackup(const std::filesystem::path& file, int generations) {
  // Nothing to back up is no reason to give the oldest backup up.
  if (!isThere(file)) return {};
  for (int older = generations; older > 1; --older) {
    const FileResult moved = move(backupOf(file, older - 1), backupOf(file, older));
    if (!moved) return moved;
  }
  return move(file, backupOf(file, 1));
}

}  // namespace kelvane
