#include "base/loopback_port.h"

#include <winsock2.h>

namespace kelvane {

std::int32_t freeLoopbackPort() {
  WSADATA data;
  if (::WSAStartup(MAKEWORD(2, 2), &data) != 0) return 0;
  const SOCKET probe = ::socket(AF_INET, SOCK_STREAM, 0);
  sockaddr_in where{};
  where.sin_family = AF_INET;
  where.sin_addr.s_addr = ::htonl(INADDR_LOOPBACK);
  int size = sizeof where;
  const bool bound = ::bind(probe, reinterpret_cast<sockaddr*>(&where), size) == 0 &&
                     ::getsockname(probe, reinterpret_cast<sockaddr*>(&where), &size) == 0;
  ::closesocket(probe);
  ::WSACleanup();
  return bound ? ::ntohs(where.sin_port) : 0;
}

}  // namespace kelvane
