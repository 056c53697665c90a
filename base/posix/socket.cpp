#include "base/socket.h"

#include <fcntl.h>
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <ctime>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <system_error>
#include <utility>

namespace kelvane {

namespace {

NetFailure failureOf(int error) {
  switch (error) {
    case ECONNREFUSED:
      return NetFailure::Refused;
    case ENETUNREACH:
    case EHOSTUNREACH:
    case ENETDOWN:
      return NetFailure::Unreachable;
    case ETIMEDOUT:
      return NetFailure::TimedOut;
    case EADDRNOTAVAIL:
    case EAFNOSUPPORT:
      return NetFailure::BadAddress;
    default:
      return NetFailure::Ended;
  }
}

bool isTemporary(int error) { return error == EAGAIN || error == EWOULDBLOCK || error == EINTR; }

}  // namespace

struct WakeUp::Native {
  int ends[2] = {-1, -1};
};

WakeUp::WakeUp() : native_(std::make_unique<Native>()) {
  if (pipe2(native_->ends, O_NONBLOCK | O_CLOEXEC) != 0) {
    throw std::system_error(errno, std::generic_category(), "pipe");
  }
}

WakeUp::~WakeUp() {
  ::close(native_->ends[0]);
  ::close(native_->ends[1]);
}

void WakeUp::signal() {
  // A full pipe has woken the reader already.
  [[maybe_unused]] const auto written = ::write(native_->ends[1], "", 1);
}

struct TcpSocket::Native {
  int handle = -1;
  bool connecting = false;
  std::string unsent;
};

TcpSocket::TcpSocket(std::shared_ptr<WakeUp> wake)
    : wake_(std::move(wake)), native_(std::make_unique<Native>()) {}

TcpSocket::~TcpSocket() { close(); }

std::optional<NetFailure> TcpSocket::begin(const NetAddress& address) {
  close();
  const auto* where = reinterpret_cast<const sockaddr*>(address.bytes.data());
  auto& handle = native_->handle;
  handle = ::socket(where->sa_family, SOCK_STREAM | SOCK_NONBLOCK | SOCK_CLOEXEC, 0);
  if (handle < 0) return failureOf(errno);
  const int on = 1;
  ::setsockopt(handle, IPPROTO_TCP, TCP_NODELAY, &on, sizeof on);
  // A connection that is made at once is writable at once: wait() tells it like any other.
  const int result = ::connect(handle, where, static_cast<socklen_t>(address.size));
  native_->connecting = true;
  if (result == 0 || errno == EINPROGRESS || errno == EINTR) return std::nullopt;
  const auto failure = failureOf(errno);
  close();
  return failure;
}

void TcpSocket::close() {
  if (native_->handle >= 0) ::close(native_->handle);
  *native_ = {};
}

TcpSocket::Events TcpSocket::wait(std::chrono::nanoseconds time) {
  const bool writes = native_->connecting || !native_->unsent.empty();
  pollfd polled[2] = {{wake_->native_->ends[0], POLLIN, 0},
                      {native_->handle, static_cast<short>(POLLIN | (writes ? POLLOUT : 0)), 0}};
  const auto seconds = std::chrono::duration_cast<std::chrono::seconds>(time);
  const timespec limit{static_cast<time_t>(seconds.count()),
                       static_cast<long>((time - seconds).count())};
  Events events;
  if (::ppoll(polled, native_->handle >= 0 ? 2 : 1, &limit, nullptr) <= 0) return events;
  if (polled[0].revents != 0) {
    char dropped[64];
    while (::read(wake_->native_->ends[0], dropped, sizeof dropped) == sizeof dropped) {
    }
  }
  const auto happened = polled[1].revents;
  if (happened == 0) return events;
  if (native_->connecting) {
    int error = 0;
    socklen_t size = sizeof error;
    ::getsockopt(native_->handle, SOL_SOCKET, SO_ERROR, &error, &size);
    events.connected = error == 0 && (happened & POLLOUT) != 0;
    native_->connecting = false;
    if (!events.connected) {
      events.failed = failureOf(error);
      close();
    }
    return events;
  }
  if ((happened & POLLOUT) != 0 && !send({})) events.failed = NetFailure::Ended;
  events.readable = (happened & (POLLIN | POLLERR | POLLHUP)) != 0;
  return events;
}

bool TcpSocket::receive(std::string& bytes) {
  char buffer[16384];
  const auto count = ::recv(native_->handle, buffer, sizeof buffer, 0);
  if (count > 0) bytes.append(buffer, static_cast<std::size_t>(count));
  return count > 0 || (count < 0 && isTemporary(errno));
}

bool TcpSocket::send(std::string_view bytes) {
  auto& unsent = native_->unsent;
  const bool queued = !unsent.empty();
  if (queued) unsent += bytes;
  const std::string_view all = queued ? std::string_view(unsent) : bytes;
  if (all.empty()) return true;
  const auto count = ::send(native_->handle, all.data(), all.size(), MSG_NOSIGNAL);
  if (count < 0 && !isTemporary(errno)) return false;
  const auto sent = static_cast<std::size_t>(std::max<ssize_t>(count, 0));
  if (queued)
    unsent.erase(0, sent);
  else
    unsent.assign(all.substr(sent));
  return true;
}

}  // namespace kelvane
