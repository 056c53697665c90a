#pragma once

#include "components/sondrel/capabilities.h"

namespace kelvane::sondrel {

/// A mode of contract/modes.h with the traits that it has anywhere and the bandwidths that are
/// usual for it. A number that is no mode gets neither.
ModeChoice standardMode(Setting mode);

}  // namespace kelvane::sondrel
