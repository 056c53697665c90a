#pragma once

#include "base/result.h"
#include "components/sondrel/config/receiver_config.h"

namespace kelvane::sondrel {

/// Joins what `mine` and `theirs` changed in `base`. A receiver is known by its memories, which
/// stay when it is renamed or moved. One that both changed, unlike each other, is a conflict. The
/// order is mine, with what they added at its end; all but the receivers is theirs.
Result<ReceiverConfig> mergeConfigs(const ReceiverConfig& base, const ReceiverConfig& mine,
                                    const ReceiverConfig& theirs);

}  // namespace kelvane::sondrel
