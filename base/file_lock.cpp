#include "base/file_lock.h"

namespace kelvane {

Result<> changeFile(const std::filesystem::path& path, std::size_t limit, FileSteps& steps,
                    const std::function<FileChange(const FileReading& now)>& change) {
  std::filesystem::path beside = path;
  beside += ".lock";
  FileLock lock;
  const Result<> sole = retryWhileHeld(steps, [&] { return lock.acquire(beside); });
  if (!sole) return Failure{"Cannot write " + pathText(path) + ": " + sole.reason(), sole.held()};
  const FileReading now = readWhenFree(path, limit, steps);
  if (now.how == FileReading::Unreadable) return Failure{now.reason, now.held};
  const FileChange changed = change(now);
  if (!changed) return changed.failure();
  if (!*changed) return {};
  return writeFileSafely(path, **changed, steps);
}

}  // namespace kelvane
