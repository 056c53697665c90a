#pragma once

#include <cstddef>
#include <filesystem>

#include "base/safe_file.h"

namespace kelvane {

/// Reads a file that another program may be writing: until it was the same before and after, a
/// moment after where it is new. Unreadable, held, where it changes for longer than a second.
/// Waits.
FileReading readUnchanging(const std::filesystem::path& file, std::size_t limit, FileSteps& disk);

}  // namespace kelvane
