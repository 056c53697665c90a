#pragma once

#include <vector>

#include "ui/global.h"

namespace kelvane::win32 {

/// The screens' work areas, in pixels.
std::vector<Global::Area> screens();

}  // namespace kelvane::win32
