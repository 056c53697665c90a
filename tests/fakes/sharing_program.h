#pragma once

#include <arpa/inet.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <sys/time.h>
#include <unistd.h>

#include <string>
#include <string_view>

namespace kelvane::fakes {

/// A program that uses a shared receiver through a socket of loopback.
class SharingProgram {
 public:
  enum class Family { Old = AF_INET, New = AF_INET6 };
  explicit SharingProgram(int port, Family family = Family::Old)
      : socket_(::socket(static_cast<int>(family), SOCK_STREAM | SOCK_CLOEXEC, 0)) {
    sockaddr_in old{};
    old.sin_family = AF_INET;
    old.sin_port = htons(static_cast<std::uint16_t>(port));
    old.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    sockaddr_in6 newer{};
    newer.sin6_family = AF_INET6;
    newer.sin6_port = old.sin_port;
    newer.sin6_addr = in6addr_loopback;
    const timeval limit{10, 0};
    ::setsockopt(socket_, SOL_SOCKET, SO_RCVTIMEO, &limit, sizeof limit);
    connected_ = (family == Family::Old
                      ? ::connect(socket_, reinterpret_cast<sockaddr*>(&old), sizeof old)
                      : ::connect(socket_, reinterpret_cast<sockaddr*>(&newer), sizeof newer)) == 0;
  }
  ~SharingProgram() { ::close(socket_); }
  SharingProgram(const SharingProgram&) = delete;
  SharingProgram& operator=(const SharingProgram&) = delete;

  bool connected() const { return connected_; }
  bool send(std::string_view bytes) {
    return ::send(socket_, bytes.data(), bytes.size(), MSG_NOSIGNAL | MSG_DONTWAIT) > 0;
  }
  /// What arrives next, as one packet; empty at the end of the connection.
  std::string receive() {
    char buffer[65536];
    const auto count = ::recv(socket_, buffer, sizeof buffer, 0);
    return count > 0 ? std::string(buffer, static_cast<std::size_t>(count)) : std::string();
  }
  std::string ask(std::string_view line) {
    send(std::string(line) + "\n");
    return receive();
  }
  /// "127.0.0.1:50123", as the other end sees it.
  std::string address() const {
    sockaddr_in self{};
    socklen_t size = sizeof self;
    ::getsockname(socket_, reinterpret_cast<sockaddr*>(&self), &size);
    return "127.0.0.1:" + std::to_string(ntohs(self.sin_port));
  }

 private:
  int socket_;
  bool connected_ = false;
};

}  // namespace kelvane::fakes
