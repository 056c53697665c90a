#include "base/backup_file.h"

namespace kelvane {

namespace {

std::filesystem::path backupOf(std::filesystem::path file, int generation) {
  file += generation == 1 ? ".bak" : ".bak" + std::to_string(generation);
  return file;
}

FileResult move(const std::filesystem::path& from, const std::filesystem::path& to) {
  std::error_code error;
  if (!std::filesystem::exists(std::filesystem::symlink_status(from, error))) return {};
  std::filesystem::rename(from, to, error);
  return error ? FileResult{false, systemWords(error)} : FileResult{};
}

}  // namespace

FileResult moveToBackup(const std::filesystem::path& file, int generations) {
  for (int older = generations; older > 1; --older) {
    const FileResult moved = move(backupOf(file, older - 1), backupOf(file, older));
    if (!moved) return moved;
  }
  return move(file, backupOf(file, 1));
}

}  // namespace kelvane
