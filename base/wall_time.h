#pragma once

#include <cstdint>

namespace kelvane {

/// Milliseconds since the beginning of 1970, UTC: what a person reads beside an event.
using WallTime = std::int64_t;

}  // namespace kelvane
