#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "components/sondrel/receiver_entry.h"

namespace kelvane::sondrel {

/// The receivers of one instance, as its configuration file says them.
struct ReceiverConfig {
  std::vector<ReceiverEntry> receivers;  ///< at most eight
  /// Sections after the eighth: not served, but kept in the file.
  std::vector<ReceiverEntry> beyond;
  /// Lines that nobody knows, kept in the file: those before the first section, and whole sections
  /// that are no receiver's.
  std::vector<std::string> head;
  std::vector<std::string> others;
  std::vector<std::string> notes;  ///< what could not be taken as it stands, in words
};

/// Reads a configuration; none where the text is no configuration at all. Keys, comments and lines
/// that are not understood are kept for writing.
std::optional<ReceiverConfig> readConfig(std::string_view text);

/// The text of a configuration, every key of every kind explained at its head.
std::string writeConfig(const ReceiverConfig& config);

/// What a new instance has: four simulated receivers, unlike each other.
ReceiverConfig standardConfig();

/// A file name for a receiver's channels that none of the others has.
std::string newMemoriesName(const ReceiverEntry& entry, const std::vector<std::string>& taken);

}  // namespace kelvane::sondrel
