#pragma once

#include <filesystem>
#include <string>

#include "base/safe_file.h"
#include "components/sondrel/config/receiver_config.h"

namespace kelvane::sondrel {

/// A configuration as it was found on the disk.
struct LoadedConfig {
  ReceiverConfig config;
  std::string note;        ///< what the operator should know, a line each; empty when all is well
  std::string unreadable;  ///< why the file that is there cannot be read; there is no config then
};

/// Reads the file. Where there is none, or a damaged one, which is kept aside, the standard
/// configuration takes its place. One that cannot be read is left alone. Waits, as `retryWhileHeld`
/// does, for another program that holds it.
LoadedConfig loadConfig(const std::filesystem::path& path, FileSteps& steps);

/// Writes the list that was made of the loaded one, together with what other processes changed in
/// the file meanwhile; `loaded` is what the file holds then. Refuses where both changed the same
/// receiver. A damaged file is never written over: it is moved aside first.
Result<> saveConfig(const std::filesystem::path& path, const ReceiverConfig& wanted,
                    LoadedConfig& loaded, FileSteps& steps);

}  // namespace kelvane::sondrel
