#pragma once

#include <functional>
#include <string>
#include <vector>

namespace kelvane::sondrel {

/// A serial port of this computer.
struct SerialPort {
  std::string name;  ///< as programs open it: "COM5"
  std::string
      words;  ///< as the system calls it: "USB Serial (COM5)"; the name where it says nothing
  bool operator==(const SerialPort&) const = default;
};

/// The ports that are plugged in at this moment, by number. May take some milliseconds; not for the
/// user-interface thread.
using SerialPorts = std::function<std::vector<SerialPort>()>;

}  // namespace kelvane::sondrel
