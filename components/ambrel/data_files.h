#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace kelvane::ambrel {

/// Where the component's texts lie, and which of several files of one name wins: the instance's
/// own, then the user's for all instances, then NAME.user.EXT beside the shipped one, then the
/// shipped one.
class DataFiles {
 public:
  DataFiles(std::filesystem::path shipped, std::filesystem::path user, std::string_view instance);

  /// The instance's own folder, in which the component keeps what it was given. It need not exist.
  const std::filesystem::path& ownFolder() const { return folders_.front(); }

  /// The existing files of that name, the winner first.
  std::vector<std::filesystem::path> named(std::string_view name) const;

  /// For every name below the folders that begins and ends so, its winner; in the names' order.
  std::vector<std::filesystem::path> allLike(std::string_view start, std::string_view end) const;

 private:
  std::vector<std::filesystem::path> folders_;
};

}  // namespace kelvane::ambrel
