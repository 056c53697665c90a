#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "base/result.h"

namespace kelvane::sondrel {

/// A radio that this program keeps a server of its own for, as its section of the configuration
/// describes it.
struct RadioSetup {
  std::int32_t model = 0;  ///< rigctld's number of the model; 0 where none is chosen
  std::string device;      ///< a serial port ("COM5") or host:port
  std::int32_t speed = 0;  ///< baud; 0 for the model's own
  std::string civ;      ///< the address of an Icom radio ("94h", "0x94"); empty for the usual one
  std::string options;  ///< more words for rigctld, as they stand
  std::string program;  ///< the rigctld to use; empty for the one that is found
};

/// One word of a Windows command line: in quotes where it needs them, and its own quotes and the
/// backslashes before them escaped, so that the started program reads the very same word.
std::string quotedWord(std::string_view word);

/// The line that starts this program as the radio's server on loopback. The lines RTS and DTR stay
/// low, and no command can key a transmitter; options that say otherwise of the lines are heeded.
std::string serverCommand(const RadioSetup& setup, std::string_view program, std::int32_t port);

/// Whether a server can be started for this radio.
Result<> checkSetup(const RadioSetup& setup);

/// Whether a device is a place in the network and no port of this computer.
bool isNetworkDevice(std::string_view device);

/// Whether two devices are the same port, however they are written ("com5", "\\.\COM5").
bool sameDevice(std::string_view a, std::string_view b);

// Whether a key's text is right; else what is wrong with it, behind the key's name.
Result<> checkDevice(std::string_view text);
Result<> checkCiv(std::string_view text);
Result<> checkOptions(std::string_view text);

/// The address that a text names, 0 to 255: hexadecimal as Icom's menus show it, "94h" or "0x94".
/// -1 where it is none.
int civAddress(std::string_view text);

}  // namespace kelvane::sondrel
