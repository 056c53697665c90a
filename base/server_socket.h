#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "base/socket.h"

namespace kelvane {

// The system's sockets as a server needs them, each function the same on every system. Nothing ever
// blocks; SocketWatch waits. A closed handle is never used again.

/// A socket of the system's; kNoSocket for none.
using SocketHandle = std::uintptr_t;
inline constexpr SocketHandle kNoSocket = ~SocketHandle{0};

/// Why nobody can listen at a place.
enum class ListenFailure {
  InUse,      ///< another program listens there
  Forbidden,  ///< the system keeps the port for itself, or from this user
  NoAddress,  ///< this computer has no such address
  Failed,     ///< anything else
};

/// Uses the system's sockets as long as it lives; made before the first of them.
class SocketUse {
 public:
  SocketUse();
  ~SocketUse();
  SocketUse(const SocketUse&) = delete;
  SocketUse& operator=(const SocketUse&) = delete;
};

/// The place that a numeric address names ("127.0.0.1", "::1"); none for anything else.
std::optional<NetAddress> numericAddress(const std::string& host, std::uint16_t port);
/// The 4 or 16 bytes of an address without its port.
std::vector<std::uint8_t> addressBytes(const NetAddress& address);
/// "127.0.0.1:4532" or "[::1]:4532".
std::string addressText(const NetAddress& address);

/// Listens; kNoSocket, with the reason, where that is not possible.
SocketHandle listenAt(const NetAddress& address, ListenFailure& failure);
/// Takes the next connection that waits, its own small packets sent at once; kNoSocket for none.
/// `refused` says whether one waits that the system cannot give now.
SocketHandle acceptFrom(SocketHandle listener, NetAddress& peer, bool& refused);
/// How many bytes came, 0 when none wait; none when the connection has ended.
std::optional<std::size_t> receiveFrom(SocketHandle connection, std::span<char> buffer);
/// How many bytes the system took; none when the connection has ended.
std::optional<std::size_t> sendTo(SocketHandle connection, std::string_view bytes);
void closeSocket(SocketHandle handle);

}  // namespace kelvane
