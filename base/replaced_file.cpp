#include "base/replaced_file.h"

#include <string_view>

#include "base/backup_file.h"
#include "base/barrier.h"

namespace kelvane {

ReplacedFile::~ReplacedFile() {
  barrier("giving a file its name back", [this] { putBack(); });
}

Result<> ReplacedFile::makeWay() {
  const Result<> moved = moveToBackup(file_);
  movedAway_ = moved.ok();
  return moved;
}

void ReplacedFile::putBack() {
  if (movedAway_) takeBackupBack(file_);
  movedAway_ = false;
}

Result<> writeInPlaceOf(const std::shared_ptr<ReplacedFile>& replaced,
                        const std::filesystem::path& file, std::string_view content,
                        FileSteps& steps) {
  Result<> written = writeFileSafely(file, content, steps);
  if (!written && replaced) replaced->putBack();
  return written;
}

}  // namespace kelvane
