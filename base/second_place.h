#pragma once

#include <filesystem>
#include <vector>

namespace kelvane {

/// Where what belongs into a file is kept that cannot be written: beside it, else in the user's
/// folder for temporary files, which may lie on another disk. Each name is this file's alone.
std::vector<std::filesystem::path> secondPlaces(const std::filesystem::path& file);

}  // namespace kelvane
