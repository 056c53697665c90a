#include "base/server_socket.h"

#include <arpa/inet.h>
#include <fcntl.h>
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <sys/socket.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <optional>
#include <span>
#include <string_view>

namespace kelvane {

#include "base/server_address.inc"

namespace {

int fileOf(SocketHandle handle) { return static_cast<int>(handle); }
SocketHandle handleOf(int file) { return file < 0 ? kNoSocket : static_cast<SocketHandle>(file); }

ListenFailure listenFailureOf(int error) {
  if (error == EADDRINUSE) return ListenFailure::InUse;
  if (error == EACCES || error == EPERM) return ListenFailure::Forbidden;
  if (error == EADDRNOTAVAIL || error == EAFNOSUPPORT) return ListenFailure::NoAddress;
  return ListenFailure::Failed;
}

bool isNoEnd(int error) { return error == EAGAIN || error == EWOULDBLOCK || error == EINTR; }

}  // namespace

SocketUse::SocketUse() = default;
SocketUse::~SocketUse() = default;

SocketHandle listenAt(const NetAddress& address, ListenFailure& failure) {
  const sockaddr* where = systemAddress(address);
  const int file = ::socket(where->sa_family, SOCK_STREAM | SOCK_NONBLOCK | SOCK_CLOEXEC, 0);
  const int on = 1;
  // A port that was closed a moment ago is free; one that is listened at is refused all the same.
  if (file >= 0) ::setsockopt(file, SOL_SOCKET, SO_REUSEADDR, &on, sizeof on);
  if (file >= 0 && where->sa_family == AF_INET6) {
    ::setsockopt(file, IPPROTO_IPV6, IPV6_V6ONLY, &on, sizeof on);
  }
  if (file >= 0 && ::bind(file, where, static_cast<socklen_t>(address.size)) == 0 &&
      ::listen(file, SOMAXCONN) == 0) {
    return handleOf(file);
  }
  failure = listenFailureOf(errno);
  if (file >= 0) ::close(file);
  return kNoSocket;
}

SocketHandle acceptFrom(SocketHandle listener, NetAddress& peer, bool& refused) {
  socklen_t size = static_cast<socklen_t>(peer.bytes.size());
  const int file = ::accept4(fileOf(listener), reinterpret_cast<sockaddr*>(peer.bytes.data()),
                             &size, SOCK_NONBLOCK | SOCK_CLOEXEC);
  refused = file < 0 && !isNoEnd(errno);
  if (file < 0) return kNoSocket;
  peer.size = size;
  const int on = 1;
  ::setsockopt(file, IPPROTO_TCP, TCP_NODELAY, &on, sizeof on);
  return handleOf(file);
}

std::optional<std::size_t> receiveFrom(SocketHandle connection, std::span<char> buffer) {
  const auto count = ::recv(fileOf(connection), buffer.data(), buffer.size(), 0);
  if (count > 0) return static_cast<std::size_t>(count);
  return count < 0 && isNoEnd(errno) ? std::optional<std::size_t>(0) : std::nullopt;
}

std::optional<std::size_t> sendTo(SocketHandle connection, std::string_view bytes) {
  const auto count = ::send(fileOf(connection), bytes.data(), bytes.size(), MSG_NOSIGNAL);
  if (count >= 0) return static_cast<std::size_t>(count);
  return isNoEnd(errno) ? std::optional<std::size_t>(0) : std::nullopt;
}

void closeSocket(SocketHandle handle) { ::close(fileOf(handle)); }

}  // namespace kelvane
