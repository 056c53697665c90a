#pragma once

#include <filesystem>

namespace kelvane {

/// The program's folder in the calling user's local application data, below which each instance
/// keeps its own. It need not exist. Throws std::system_error where the user has no such place.
std::filesystem::path userDataFolder();

}  // namespace kelvane
