#pragma once

#include "diagnostics/report.h"

namespace kelvane::win32 {

/// Windows' version and the program's width, e.g. "Windows 10.0.19045, 64-bit program".
std::string systemVersion();

/// The version of Windows, and of the program and the libraries that lie beside it.
SystemFacts systemFacts();

/// Now, as a wall clock shows it.
WallTime wallTime();

}  // namespace kelvane::win32
