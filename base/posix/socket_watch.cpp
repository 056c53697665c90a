#include "base/socket_watch.h"

#include <poll.h>
#include <sys/eventfd.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <memory>
#include <system_error>
#include <vector>

namespace kelvane {

struct SocketWatch::Native {
  /// The first one ends a wait.
  std::vector<pollfd> polled;

  auto find(SocketHandle socket) {
    return std::ranges::find(polled, static_cast<int>(socket), &pollfd::fd);
  }
};

SocketWatch::SocketWatch() : native_(std::make_unique<Native>()) {
  const int file = ::eventfd(0, EFD_NONBLOCK | EFD_CLOEXEC);
  if (file < 0) throw std::system_error(errno, std::generic_category(), "event");
  native_->polled.push_back({file, POLLIN, 0});
}

SocketWatch::~SocketWatch() { ::close(native_->polled.front().fd); }

void SocketWatch::addListener(SocketHandle listener) { addConnection(listener); }

void SocketWatch::addConnection(SocketHandle connection) {
  native_->polled.push_back({static_cast<int>(connection), POLLIN, 0});
}

void SocketWatch::remove(SocketHandle socket) {
  const auto place = native_->find(socket);
  if (place != native_->polled.end()) native_->polled.erase(place);
}

void SocketWatch::setWrites(SocketHandle connection, bool writes) {
  const auto place = native_->find(connection);
  if (place != native_->polled.end()) {
    place->events = static_cast<short>(POLLIN | (writes ? POLLOUT : 0));
  }
}

void SocketWatch::again(SocketHandle) {}  // what waits is told each time

const std::vector<SocketHandle>& SocketWatch::wait(std::chrono::nanoseconds time) {
  auto& polled = native_->polled;
  told_.clear();
  const auto seconds = std::chrono::duration_cast<std::chrono::seconds>(time);
  const timespec limit{static_cast<time_t>(seconds.count()),
                       static_cast<long>((time - seconds).count())};
  if (::ppoll(polled.data(), polled.size(), &limit, nullptr) <= 0) return told_;
  for (const pollfd& seen : polled) {
    if (seen.revents != 0) told_.push_back(static_cast<SocketHandle>(seen.fd));
  }
  if (polled.front().revents != 0) {
    eventfd_t count = 0;
    ::eventfd_read(polled.front().fd, &count);
    told_.erase(told_.begin());
  }
  return told_;
}

void SocketWatch::wake() { ::eventfd_write(native_->polled.front().fd, 1); }

}  // namespace kelvane
