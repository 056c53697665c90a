#include "base/server_socket.h"

#include <winsock2.h>
#include <ws2tcpip.h>

#include <cstring>

namespace kelvane {

#include "base/server_address.inc"

namespace {

ListenFailure listenFailureOf(int error) {
  if (error == WSAEADDRINUSE) return ListenFailure::InUse;
  if (error == WSAEACCES) return ListenFailure::Forbidden;
  if (error == WSAEADDRNOTAVAIL || error == WSAEAFNOSUPPORT) return ListenFailure::NoAddress;
  return ListenFailure::Failed;
}

SOCKET openSocket(int family, int type) {
  return ::WSASocketW(family, type, 0, nullptr, 0,
                      WSA_FLAG_OVERLAPPED | WSA_FLAG_NO_HANDLE_INHERIT);
}

void neverBlock(SOCKET socket) {
  u_long on = 1;
  ::ioctlsocket(socket, FIONBIO, &on);
}

void switchOn(SOCKET socket, int level, int option) {
  const BOOL on = TRUE;
  ::setsockopt(socket, level, option, reinterpret_cast<const char*>(&on), sizeof on);
}

/// Whether a program listens at the port on whatever address: bound to all of them it would share
/// the port with one that is bound to a single one, and each would get some of the connections.
bool isPortTaken(const NetAddress& address) {
  NetAddress any = address;
  auto* where = reinterpret_cast<sockaddr*>(any.bytes.data());
  if (where->sa_family != AF_INET) return false;
  reinterpret_cast<sockaddr_in*>(where)->sin_addr.s_addr = htonl(INADDR_ANY);
  const SOCKET probe = openSocket(AF_INET, SOCK_STREAM);
  if (probe == INVALID_SOCKET) return false;
  switchOn(probe, SOL_SOCKET, SO_EXCLUSIVEADDRUSE);
  const bool taken =
      ::bind(probe, where, static_cast<int>(any.size)) != 0 && ::WSAGetLastError() == WSAEADDRINUSE;
  ::closesocket(probe);
  return taken;
}

}  // namespace

SocketUse::SocketUse() {
  WSADATA data;
  ::WSAStartup(MAKEWORD(2, 2), &data);
}

SocketUse::~SocketUse() { ::WSACleanup(); }

SocketHandle listenAt(const NetAddress& address, ListenFailure& failure) {
  if (isPortTaken(address)) {
    failure = ListenFailure::InUse;
    return kNoSocket;
  }
  const sockaddr* where = systemAddress(address);
  const SOCKET socket = openSocket(where->sa_family, SOCK_STREAM);
  if (socket != INVALID_SOCKET) {
    switchOn(socket, SOL_SOCKET, SO_EXCLUSIVEADDRUSE);
    if (where->sa_family == AF_INET6) switchOn(socket, IPPROTO_IPV6, IPV6_V6ONLY);
    neverBlock(socket);
    if (::bind(socket, where, static_cast<int>(address.size)) == 0 &&
        ::listen(socket, SOMAXCONN) == 0) {
      return socket;
    }
  }
  failure = listenFailureOf(::WSAGetLastError());
  if (socket != INVALID_SOCKET) ::closesocket(socket);
  return kNoSocket;
}

SocketHandle acceptFrom(SocketHandle listener, NetAddress& peer, bool& refused) {
  int size = static_cast<int>(peer.bytes.size());
  const SOCKET socket = ::accept(listener, reinterpret_cast<sockaddr*>(peer.bytes.data()), &size);
  refused = socket == INVALID_SOCKET && ::WSAGetLastError() != WSAEWOULDBLOCK;
  if (socket == INVALID_SOCKET) return kNoSocket;
  peer.size = static_cast<std::size_t>(size);
  ::SetHandleInformation(reinterpret_cast<HANDLE>(socket), HANDLE_FLAG_INHERIT, 0);
  switchOn(socket, IPPROTO_TCP, TCP_NODELAY);
  neverBlock(socket);
  return socket;
}

std::optional<std::size_t> receiveFrom(SocketHandle connection, std::span<char> buffer) {
  const int count = ::recv(connection, buffer.data(), static_cast<int>(buffer.size()), 0);
  if (count > 0) return static_cast<std::size_t>(count);
  const bool none = count < 0 && ::WSAGetLastError() == WSAEWOULDBLOCK;
  return none ? std::optional<std::size_t>(0) : std::nullopt;
}

std::optional<std::size_t> sendTo(SocketHandle connection, std::string_view bytes) {
  const int count = ::send(connection, bytes.data(), static_cast<int>(bytes.size()), 0);
  if (count >= 0) return static_cast<std::size_t>(count);
  return ::WSAGetLastError() == WSAEWOULDBLOCK ? std::optional<std::size_t>(0) : std::nullopt;
}

void closeSocket(SocketHandle handle) { ::closesocket(handle); }

}  // namespace kelvane
