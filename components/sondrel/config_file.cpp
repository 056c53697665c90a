#include "components/sondrel/config_file.h"

namespace kelvane::sondrel {

namespace {

constexpr std::size_t kLargestConfigFile = 4 << 20;

void addLine(std::string& note, const std::string& line) {
  if (!note.empty()) note += "\n";
  note += line;
}

LoadedConfig standardInstead(const std::filesystem::path& path, const std::string& why,
                             FileSteps& steps) {
  LoadedConfig loaded;
  loaded.config = standardConfig();
  if (!why.empty()) {
    const auto aside = keepAside(path);
    loaded.inTheWay = aside.empty();
    addLine(loaded.note, why + ". Four simulated receivers are used instead.");
    if (!aside.empty()) addLine(loaded.note, "The file is kept as " + pathText(aside) + ".");
  }
  if (loaded.inTheWay) return loaded;
  const FileResult written = saveConfig(path, loaded, steps);
  if (!written) addLine(loaded.note, written.reason + ".");
  return loaded;
}

}  // namespace

LoadedConfig loadConfig(const std::filesystem::path& path, FileSteps& steps) {
  std::string reason;
  const auto text = readFile(path, kLargestConfigFile, &reason);
  if (!text) return standardInstead(path, reason, steps);
  auto config = readConfig(*text);
  if (!config) {
    return standardInstead(path, "The receiver configuration " + pathText(path) + " is damaged",
                           steps);
  }
  LoadedConfig loaded;
  loaded.config = std::move(*config);
  if (loaded.config.notes.empty()) return loaded;
  addLine(loaded.note, "The receiver configuration " + pathText(path) + ":");
  for (const std::string& note : loaded.config.notes) addLine(loaded.note, note);
  return loaded;
}

FileResult saveConfig(const std::filesystem::path& path, const LoadedConfig& loaded,
                      FileSteps& steps) {
  if (loaded.inTheWay) {
    std::error_code error;
    if (std::filesystem::exists(path, error) && keepAside(path).empty()) {
      return {false, pathText(path) + " cannot be read, and is not written over"};
    }
  }
  return writeFileSafely(path, writeConfig(loaded.config), steps);
}

}  // namespace kelvane::sondrel
