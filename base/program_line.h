#pragma once

#include <string>
#include <string_view>

namespace kelvane {

/// The program that a command line names.
struct ProgramLine {
  std::string program;  ///< without quotes; as it was written, perhaps without folder or ending
  std::string problem;  ///< why it is not sure which one is meant, in words; else empty
};

/// Reads the program off a line: what is in quotes; else what ends with ".exe"; else the first
/// word. Where that word is a path which seems to go on behind the blank none is meant for sure: a
/// program that somebody put at the shorter name ("C:\\Program") must not be started instead.
ProgramLine programOf(std::string_view line);

}  // namespace kelvane
