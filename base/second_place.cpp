#include "base/second_place.h"

#include <cstdint>
#include <cstdio>
#include <string>
#include <system_error>

#include "base/safe_file.h"

namespace kelvane {

namespace {

/// Tells files of one name in different folders apart.
std::string pathMark(const std::filesystem::path& file) {
  std::uint32_t hash = 2166136261u;
  for (const char c : pathText(file)) hash = (hash ^ static_cast<unsigned char>(c)) * 16777619u;
  char digits[9];
  std::snprintf(digits, sizeof digits, "%08x", static_cast<unsigned>(hash));
  return digits;
}

}  // namespace

std::vector<std::filesystem::path> secondPlaces(const std::filesystem::path& file) {
  std::vector<std::filesystem::path> places{file};
  places.front() += ".unsaved";
  std::error_code none;
  const auto temporary = std::filesystem::temp_directory_path(none);
  if (none) return places;
  const std::string name = pathText(file.stem()) + "-" + pathMark(file) + ".unsaved";
  places.push_back(temporary / "Kelvane" / pathFromText(name));
  return places;
}

}  // namespace kelvane
