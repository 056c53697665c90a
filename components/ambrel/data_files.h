#pragma once

#include <filesystem>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "base/safe_file.h"

namespace kelvane::ambrel {

/// What there is to say of files that were read.
struct FileNotes {
  std::vector<std::string> wrong = {};       ///< in words, a line each
  std::vector<std::string> unreadable = {};  ///< why files that are there cannot be read now
};

/// Where the component's texts lie, and which of several files of one name wins: the instance's
/// own, then the user's for all instances, then NAME.user.EXT beside the shipped one, then the
/// shipped one.
class DataFiles {
 public:
  /// Looks for what is there at once. `disk` is what is read from and written to.
  DataFiles(std::filesystem::path shipped, std::filesystem::path user, std::string_view instance,
            std::shared_ptr<FileSteps> disk = std::make_shared<FileSteps>());

  FileSteps& disk() const { return *disk_; }
  /// The same files on another disk.
  DataFiles on(std::shared_ptr<FileSteps> disk) const;

  /// Looks for what is there now; until the next look nothing else is found.
  void look();

  /// The instance's own folder, in which the component keeps what it was given. It need not exist.
  const std::filesystem::path& ownFolder() const { return folders_.front().path; }

  /// The files of that name that were there, the winner first.
  std::vector<std::filesystem::path> named(std::string_view name) const;

  /// The names in any of the folders that begin and end so, in order and each once. A user's file
  /// beside a shipped one counts under that one's name.
  std::vector<std::string> namesLike(std::string_view start, std::string_view end) const;

  /// Whether a file is one of those that came with the program.
  bool isShipped(const std::filesystem::path& file) const;

 private:
  /// A folder, and the names that are in it by the same in upper case.
  struct Folder {
    std::filesystem::path path;
    std::multimap<std::string, std::string> names = {};
  };

  std::vector<Folder> folders_;
  std::shared_ptr<FileSteps> disk_;
};

}  // namespace kelvane::ambrel
