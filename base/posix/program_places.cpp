#include "base/program_places.h"

#include <cstdlib>
#include <filesystem>
#include <mutex>
#include <system_error>

#include "base/text.h"

namespace kelvane {

namespace {

std::mutex shownMutex;
std::filesystem::path shownProgram;  ///< of this process alone

}  // namespace

ProgramPlaces programPlaces() {
  ProgramPlaces places;
  std::error_code none;
  places.own = std::filesystem::read_symlink("/proc/self/exe", none).parent_path();
  const char* path = std::getenv("PATH");
  for (const auto folder : split(path ? path : "", ':')) places.search.emplace_back(folder);
  return places;
}

std::filesystem::path shownRigctld() {
  const std::lock_guard lock(shownMutex);
  return shownProgram;
}

void keepShownRigctld(const std::filesystem::path& program) {
  const std::lock_guard lock(shownMutex);
  shownProgram = program;
}

}  // namespace kelvane
