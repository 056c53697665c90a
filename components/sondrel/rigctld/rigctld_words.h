#pragma once

#include <string>

#include "components/sondrel/rigctld/rigctld_capabilities.h"
#include "components/sondrel/rigctld/rigctld_worker.h"

namespace kelvane::sondrel {

/// What answered and what it can do, for the operator: a line each for the model, the dialect, the
/// range, the modes, what it has and what it lacks.
std::string inWords(const RigctldCapabilities& can);

/// Why there is no link, and where to look, in a sentence or two.
std::string inWords(LinkState fault, const RigctldAddress& address);

}  // namespace kelvane::sondrel
