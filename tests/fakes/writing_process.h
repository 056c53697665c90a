#pragma once

#include <filesystem>
#include <functional>
#include <map>
#include <string>

#include "settings/settings.h"

namespace kelvane::fakes {

/// A process that writes an instance's channels, receivers, log, lists and settings until it is
/// killed. `tell` hears a line of each thing that is on the disk, "channel3 1000017", as soon as
/// that is known; `settings` may be null.
[[noreturn]] void writeUntilKilled(const std::filesystem::path& folder, int which, int from,
                                   SettingsStore* settings,
                                   const std::function<void(const std::string& line)>& tell);

/// What such processes told is on the disk, and whether it is.
class WrittenFiles {
 public:
  /// Begins an instance with two receivers in this folder.
  explicit WrittenFiles(std::filesystem::path folder);

  const std::filesystem::path& folder() const { return folder_; }
  /// The lines that a process told before it was killed; its last one may be cut.
  void note(const std::string& lines);
  /// How much was known to be on the disk.
  int written() const { return written_; }

  /// What is wrong with what they left.
  struct Found {
    int lost = 0;  ///< was on the disk, and is not there
    int torn = 0;  ///< files that are not whole, and records that are there twice
  };
  Found look(const SettingsStore* settings) const;

 private:
  void noteLine(const std::string& line);
  void lookAtChannels(Found& found) const;
  void lookAtReceivers(Found& found) const;
  void lookAtLog(Found& found) const;
  void lookAtLists(Found& found) const;
  void lookAtSettings(const SettingsStore& settings, Found& found) const;

  std::filesystem::path folder_;
  int written_ = 0;
  std::map<std::string, int> newest_;  ///< of what is written again and again
  std::map<int, int> logged_;
};

}  // namespace kelvane::fakes
