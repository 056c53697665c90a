#pragma once

#include <cstdint>

namespace kelvane {

/// A row's number in the table that a grid shows.
using GridRow = std::uint32_t;

}  // namespace kelvane
