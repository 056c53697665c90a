#include "base/folder.h"

#include <dirent.h>

#include <filesystem>
#include <memory>
#include <string_view>
#include <vector>

namespace kelvane {

std::vector<std::filesystem::path> entriesIn(const std::filesystem::path& folder) {
  std::vector<std::filesystem::path> entries;
  const std::unique_ptr<DIR, int (*)(DIR*)> open(::opendir(folder.c_str()), ::closedir);
  while (const dirent* entry = open ? ::readdir(open.get()) : nullptr) {
    const std::string_view name = entry->d_name;
    if (name != "." && name != "..") entries.push_back(folder / name);
  }
  return entries;
}

}  // namespace kelvane
