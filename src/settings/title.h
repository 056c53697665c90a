#pragma once

#include <string>

namespace kelvane {

/// The program's title: name, version and what it is, e.g. "Kelvane 1.0.0 - Receiver".
inline std::string programTitle() {
  return "Kelvane " + std::to_string(KELVANE_VERSION_MAJOR) + "." +
         std::to_string(KELVANE_VERSION_MINOR) + "." + std::to_string(KELVANE_VERSION_REVISION) +
         " - Receiver";
}

}  // namespace kelvane
