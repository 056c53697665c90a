#pragma once

#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

#include "base/program_places.h"

namespace kelvane::sondrel {

/// The programs rigctld on this computer, the best first: the one that the operator has shown,
/// those beside this program, in folders named after Hamlib, along the search path, and the copies
/// that other radio programs bring along.
std::vector<std::filesystem::path> serverPrograms(const ProgramPlaces& places,
                                                  const std::filesystem::path& shown);

/// What `rigctld --version` printed.
struct ServerVersion {
  std::string words;    ///< "Hamlib 4.7.2"; empty where it was no rigctld that answered
  bool tooOld = false;  ///< before 4.0
};
ServerVersion readServerVersion(std::string_view text);

/// What to get where there is no rigctld, and where to put it.
std::string noServerProgramWords();

}  // namespace kelvane::sondrel
