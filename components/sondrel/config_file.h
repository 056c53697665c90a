#pragma once

#include <filesystem>
#include <string>

#include "base/safe_file.h"
#include "components/sondrel/receiver_config.h"

namespace kelvane::sondrel {

/// A configuration as it was found on the disk.
struct LoadedConfig {
  ReceiverConfig config;
  std::string note;       ///< what the operator should know, a line each; empty when all is well
  bool inTheWay = false;  ///< the file could neither be read nor moved aside
};

/// Reads the file. Where there is none, or a damaged one, which is kept aside, the standard
/// configuration takes its place.
LoadedConfig loadConfig(const std::filesystem::path& path, FileSteps& steps);

/// Writes the file. One that could not be read is never written over: it is moved aside first.
FileResult saveConfig(const std::filesystem::path& path, const LoadedConfig& loaded,
                      FileSteps& steps);

}  // namespace kelvane::sondrel
