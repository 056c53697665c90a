#pragma once

#include <vector>

#include "components/sondrel/radios/serial_ports.h"

namespace kelvane::sondrel {

/// The serial ports that Windows has at this moment, with the names that its own lists show. No
/// port is opened: that alone could raise its lines.
std::vector<SerialPort> systemSerialPorts();

}  // namespace kelvane::sondrel
