#pragma once

#include <string>

#include "components/sondrel/config/receiver_config.h"

namespace kelvane::sondrel {

/// A list of receivers in which two processes' changes are joined, or why they cannot be.
struct MergedConfig {
  ReceiverConfig config;
  std::string conflict;  ///< in words; empty where `config` holds both changes
};

/// Joins what `mine` and `theirs` changed in `base`. A receiver is known by its memories, which
/// stay when it is renamed or moved. One that both changed, unlike each other, is a conflict. The
/// order is mine, with what they added at its end; all but the receivers is theirs.
MergedConfig mergeConfigs(const ReceiverConfig& base, const ReceiverConfig& mine,
                          const ReceiverConfig& theirs);

}  // namespace kelvane::sondrel
