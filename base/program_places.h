#pragma once

#include <filesystem>
#include <string>
#include <vector>

namespace kelvane {

/// Where programs lie on this computer.
struct ProgramPlaces {
  std::filesystem::path own;                   ///< the folder of this program
  std::vector<std::filesystem::path> folders;  ///< those that programs are installed below
  std::vector<std::filesystem::path> search;   ///< of the search path, in its order
};

ProgramPlaces programPlaces();

/// The program `rigctld` that the operator has shown; empty where he has shown none. Kept for the
/// user, whatever the instance.
std::filesystem::path shownRigctld();
void keepShownRigctld(const std::filesystem::path& program);

}  // namespace kelvane
