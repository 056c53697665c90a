#pragma once

#include <chrono>

namespace kelvane {

/// A moment on the steady clock. Rules take it as an argument and never read a clock themselves.
using Instant = std::chrono::steady_clock::time_point;
using std::chrono::milliseconds;

/// A moment far enough away that nothing is due.
inline constexpr Instant kNever = Instant::max();

}  // namespace kelvane
