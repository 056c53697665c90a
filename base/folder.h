#pragma once

#include <filesystem>
#include <vector>

namespace kelvane {

/// The paths of what lies in a folder, in no order; none where it cannot be looked into. Throws
/// where the memory does not suffice, at which the standard library's iterator ends the program.
std::vector<std::filesystem::path> entriesIn(const std::filesystem::path& folder);

}  // namespace kelvane
