#pragma once

#include <filesystem>
#include <string_view>

#include "base/safe_file.h"

namespace kelvane {

/// Moves a file out of the way under a backup name beside it: "name.bak", and what was there
/// becomes "name.bak2" and so on as far as no name is free; the oldest of `generations` is given
/// up. On failure the file is where it was. There being no such file is a success.
Result<> moveToBackup(const std::filesystem::path& file, int generations = 5);

/// Gives a file that was moved so its name back, unless another has it by now.
void takeBackupBack(const std::filesystem::path& file);

/// Writes a file as writeFileSafely does and keeps the one that it replaces under the backup names
/// above. At no moment is there no file of the name, and an attempt that fails, as often as it is
/// repeated, costs no backup but those that are too many.
Result<> writeKeepingBackups(const std::filesystem::path& file, std::string_view content,
                             FileSteps& steps, int generations = 5);

}  // namespace kelvane
