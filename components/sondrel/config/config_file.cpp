#include "components/sondrel/config/config_file.h"

#include <optional>
#include <utility>

#include "base/file_lock.h"
#include "components/sondrel/config/config_merge.h"

namespace kelvane::sondrel {

namespace {

constexpr std::size_t kLargestConfigFile = 4 << 20;

void addLine(std::string& note, const std::string& line) {
  if (!note.empty()) note += "\n";
  note += line;
}

LoadedConfig configOf(ReceiverConfig config, const std::filesystem::path& path) {
  LoadedConfig loaded;
  loaded.config = std::move(config);
  if (loaded.config.notes.empty()) return loaded;
  addLine(loaded.note, "The receiver configuration " + pathText(path) + ":");
  for (const std::string& note : loaded.config.notes) addLine(loaded.note, note);
  return loaded;
}

LoadedConfig standardInstead(const std::filesystem::path& path, const std::string& why,
                             FileSteps& steps) {
  LoadedConfig loaded;
  loaded.config = standardConfig();
  if (!why.empty()) {
    const auto aside = keepAside(path);
    addLine(loaded.note, why + ". Four simulated receivers are used instead.");
    if (aside.empty()) return loaded;
    addLine(loaded.note, "The file is kept as " + pathText(aside) + ".");
  }
  const Result<> written =
      changeFile(path, kLargestConfigFile, steps, [&](const FileReading& now) -> FileChange {
        if (now.how == FileReading::Missing) return writeConfig(loaded.config);
        // Another process was quicker.
        if (auto there = readConfig(now.content)) loaded.config = std::move(*there);
        return kUnchanged;
      });
  if (!written) addLine(loaded.note, written.reason() + ".");
  return loaded;
}

}  // namespace

LoadedConfig loadConfig(const std::filesystem::path& path, FileSteps& steps) {
  const FileReading reading = readWhenFree(path, kLargestConfigFile, steps);
  if (reading.how == FileReading::Unreadable) {
    LoadedConfig none;
    none.unreadable = reading.reason;
    return none;
  }
  if (reading.how != FileReading::Whole) return standardInstead(path, reading.reason, steps);
  auto config = readConfig(reading.content);
  if (config) return configOf(std::move(*config), path);
  return standardInstead(path, "The receiver configuration " + pathText(path) + " is damaged",
                         steps);
}

Result<> saveConfig(const std::filesystem::path& path, const ReceiverConfig& wanted,
                    LoadedConfig& loaded, FileSteps& steps) {
  ReceiverConfig merged = wanted;
  const auto change = [&](const FileReading& now) -> FileChange {
    auto there = now.how == FileReading::Whole ? readConfig(now.content) : std::nullopt;
    const Result<ReceiverConfig> joined =
        there ? mergeConfigs(loaded.config, wanted, *there) : Result<ReceiverConfig>(wanted);
    if (!there && now.how != FileReading::Missing && keepAside(path).empty())
      return Failure{pathText(path) + " is damaged, and is not written over"};
    if (!joined) return joined.failure();
    merged = *joined;
    return writeConfig(merged);
  };
  const Result<> written = changeFile(path, kLargestConfigFile, steps, change);
  if (!written) return written;
  loaded = {};
  loaded.config = std::move(merged);
  return written;
}

}  // namespace kelvane::sondrel
