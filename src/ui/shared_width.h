#pragma once

namespace kelvane {

/// The width of each of `count` equal parts of `total`, to the nearest whole unit; part i starts at
/// i times the width.
constexpr int sharedWidth(int total, int count) { return (total + count / 2) / count; }

}  // namespace kelvane
