#pragma once

#include <string>
#include <string_view>

#include "base/result.h"

namespace kelvane {

/// The program that a command line names, without quotes; as it was written, perhaps without folder
/// or ending. It is what is in quotes; else what ends with ".exe"; else the first
/// word. Where that word is a path which seems to go on behind the blank none is meant for sure: a
/// program that somebody put at the shorter name ("C:\\Program") must not be started instead.
Result<std::string> programOf(std::string_view line);

}  // namespace kelvane
