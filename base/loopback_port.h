#pragma once

#include <cstdint>

namespace kelvane {

/// A TCP port of this computer's loopback address that nobody uses at this moment; 0 where the
/// system gives none. Somebody may take it before it is used.
std::int32_t freeLoopbackPort();

}  // namespace kelvane
