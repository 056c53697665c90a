#pragma once

#include <filesystem>

namespace kelvane::com {

/// Whether nobody but administrators and the system itself may change a file, put another one into
/// its folder, or move a folder above it away. False where that cannot be found out.
bool onlyAdministratorsWrite(const std::filesystem::path& file);

}  // namespace kelvane::com
