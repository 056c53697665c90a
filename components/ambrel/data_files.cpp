#include "components/ambrel/data_files.h"

#include <set>
#include <utility>

#include "base/folder.h"
#include "base/instance_name.h"
#include "base/safe_file.h"
#include "base/text.h"

namespace kelvane::ambrel {

namespace fs = std::filesystem;

namespace {

constexpr std::string_view kUsersMark = ".user";

std::string usersName(std::string_view name) {
  const fs::path path = pathFromText(name);
  return pathText(path.stem()) + std::string(kUsersMark) + pathText(path.extension());
}

/// The name that a file stands for: a user's file beside a shipped one stands for that one's.
std::string plainName(const fs::path& file) {
  const fs::path stem = file.stem();
  if (pathText(stem.extension()) != kUsersMark) return pathText(file.filename());
  return pathText(stem.stem()) + pathText(file.extension());
}

}  // namespace

DataFiles::DataFiles(fs::path shipped, fs::path user, std::string_view instance,
                     std::shared_ptr<FileSteps> disk)
    : folders_{{user / pathFromText(safeFileName(instance))}, {user}, {std::move(shipped)}},
      disk_(std::move(disk)) {
  look();
}

DataFiles DataFiles::on(std::shared_ptr<FileSteps> disk) const {
  DataFiles same = *this;
  same.disk_ = std::move(disk);
  return same;
}

// Once a folder, since to ask for each file that might be there takes longer than reading those
// that are.
void DataFiles::look() {
  for (Folder& folder : folders_) {
    folder.names.clear();
    for (const fs::path& entry : entriesIn(folder.path)) {
      std::string name = pathText(entry.filename());
      std::string key = upper(name);
      folder.names.emplace(std::move(key), std::move(name));
    }
  }
}

std::vector<fs::path> DataFiles::named(std::string_view name) const {
  std::vector<fs::path> found;
  for (const Folder& folder : folders_) {
    for (const std::string& candidate : {usersName(name), std::string(name)}) {
      const auto [first, end] = folder.names.equal_range(upper(candidate));
      for (auto there = first; there != end; ++there)
        found.push_back(folder.path / pathFromText(there->second));
    }
  }
  return found;
}

std::vector<std::string> DataFiles::namesLike(std::string_view start, std::string_view end) const {
  std::set<std::string> names;
  for (const Folder& folder : folders_) {
    for (const auto& [key, there] : folder.names) {
      std::string name = plainName(pathFromText(there));
      if (name.starts_with(start) && name.ends_with(end)) names.insert(std::move(name));
    }
  }
  return {names.begin(), names.end()};
}

bool DataFiles::isShipped(const fs::path& file) const {
  return file.parent_path() == folders_.back().path && plainName(file) == pathText(file.filename());
}

}  // namespace kelvane::ambrel
