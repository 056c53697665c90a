#include "base/loopback_port.h"

#include <arpa/inet.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

namespace kelvane {

std::int32_t freeLoopbackPort() {
  const int probe = ::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
  sockaddr_in where{};
  where.sin_family = AF_INET;
  where.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
  socklen_t size = sizeof where;
  const bool bound = ::bind(probe, reinterpret_cast<sockaddr*>(&where), size) == 0 &&
                     ::getsockname(probe, reinterpret_cast<sockaddr*>(&where), &size) == 0;
  ::close(probe);
  return bound ? ntohs(where.sin_port) : 0;
}

}  // namespace kelvane
