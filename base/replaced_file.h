#pragma once

#include <filesystem>
#include <memory>
#include <string_view>
#include <utility>

#include "base/safe_file.h"

namespace kelvane {

/// A file that makes way for a new one of its name. Meanwhile it lies under its backup name, and it
/// gets its own back where nothing has that name in the end: the new one could not be written, or
/// nobody went on to write it.
class ReplacedFile {
 public:
  explicit ReplacedFile(std::filesystem::path file) : file_(std::move(file)) {}
  ~ReplacedFile();
  ReplacedFile(const ReplacedFile&) = delete;
  ReplacedFile& operator=(const ReplacedFile&) = delete;

  /// On failure the file is where it was.
  Result<> makeWay();
  void putBack();

 private:
  std::filesystem::path file_;
  bool movedAway_ = false;
};

/// Writes safely. Where that fails, the file that made way is there again before this returns.
/// @param replaced none where there was no such file
Result<> writeInPlaceOf(const std::shared_ptr<ReplacedFile>& replaced,
                        const std::filesystem::path& file, std::string_view content,
                        FileSteps& steps);

}  // namespace kelvane
