#include "base/file_lock.h"

namespace kelvane {

FileResult changeFile(const std::filesystem::path& path, std::size_t limit, FileSteps& steps,
                      const std::function<FileChange(const FileReading& now)>& change) {
  std::filesystem::path beside = path;
  beside += ".lock";
  FileLock lock;
  const FileResult sole = retryWhileHeld(steps, [&] { return lock.acquire(beside); });
  if (!sole) return {false, "Cannot write " + pathText(path) + ": " + sole.reason, sole.held};
  const FileReading now = readWhenFree(path, limit, steps);
  if (now.how == FileReading::Unreadable) return {false, now.reason, now.held};
  const FileChange changed = change(now);
  if (!changed.refusal.empty()) return {false, changed.refusal};
  return changed.write ? writeFileSafely(path, changed.content, steps) : FileResult{};
}

}  // namespace kelvane
