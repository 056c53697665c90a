#pragma once

#include <string_view>

#include "base/server_socket.h"

namespace kelvane {

/// Whether an address is this computer's own loopback.
bool isLoopbackAddress(const NetAddress& address);

/// Whether an address is in a list of numeric addresses, each with or without the number of bits
/// that count ("192.168.1.7 192.168.2.0/24 fd00::/8"). Words that are neither let nobody in.
bool isInNetList(const NetAddress& address, std::string_view list);

/// Whether each word of a list is an address, or one with a number of bits.
bool isNetList(std::string_view list);

}  // namespace kelvane
