#include "base/socket_watch.h"

#include <winsock2.h>

#include <algorithm>
#include <array>
#include <system_error>

namespace kelvane {

namespace {

/// As many events as one wait can have, with those for wake() and for all listeners.
constexpr std::size_t kEvents = MAXIMUM_WAIT_OBJECTS;
constexpr std::size_t kWake = 0;
constexpr std::size_t kListeners = 1;
constexpr std::size_t kFirstConnection = 2;
constexpr long kReads = FD_READ | FD_CLOSE;

}  // namespace

// An event of its own for each connection as long as there are enough, since one wait for an event
// costs less than asking after each socket.
struct SocketWatch::Native {
  Native() {
    for (HANDLE& event : events) {
      event = ::CreateEventW(nullptr, FALSE, FALSE, nullptr);
      if (event) continue;
      const auto error = static_cast<int>(::GetLastError());
      closeEvents();
      throw std::system_error(error, std::system_category(), "event");
    }
  }
  ~Native() { closeEvents(); }
  Native(const Native&) = delete;
  Native& operator=(const Native&) = delete;

  void closeEvents() {
    for (const HANDLE event : events) {
      if (event) ::CloseHandle(event);
    }
  }
  void add(SocketHandle socket, std::size_t place, long happenings) {
    sockets[place].push_back(socket);
    ::WSAEventSelect(socket, events[place], happenings);
  }
  std::size_t placeOf(SocketHandle socket) const {
    const auto has = [socket](const auto& group) { return std::ranges::count(group, socket) != 0; };
    return static_cast<std::size_t>(std::ranges::find_if(sockets, has) - sockets.begin());
  }

  /// How many events there is something to wait for at.
  std::size_t used() const {
    const auto filled = [](const auto& group) { return !group.empty(); };
    const auto last = std::find_if(sockets.rbegin(), sockets.rend(), filled);
    return std::max(kFirstConnection, static_cast<std::size_t>(sockets.rend() - last));
  }

  /// The sockets of one event at which something waits: several of them are asked at once.
  void tell(std::size_t place, std::vector<SocketHandle>& told) {
    const auto& group = sockets[place];
    if (group.size() < 2) return told.assign(group.begin(), group.end());
    std::vector<WSAPOLLFD> asked;
    for (const SocketHandle socket : group) {
      const bool writes = std::ranges::count(writing, socket) != 0;
      asked.push_back({socket, static_cast<SHORT>(POLLRDNORM | (writes ? POLLWRNORM : 0)), 0});
    }
    if (::WSAPoll(asked.data(), static_cast<ULONG>(asked.size()), 0) <= 0) return;
    for (const WSAPOLLFD& seen : asked) {
      if (seen.revents != 0) told.push_back(seen.fd);
    }
  }

  std::array<HANDLE, kEvents> events{};
  std::array<std::vector<SocketHandle>, kEvents> sockets;
  std::vector<SocketHandle> writing;  ///< for which bytes wait
  std::size_t next = 0;               ///< whose turn it is, so that a busy one holds up nobody
};

SocketWatch::SocketWatch() : native_(std::make_unique<Native>()) {}

SocketWatch::~SocketWatch() = default;

void SocketWatch::addListener(SocketHandle listener) {
  native_->add(listener, kListeners, FD_ACCEPT);
}

void SocketWatch::addConnection(SocketHandle connection) {
  const auto& sockets = native_->sockets;
  const auto fewest = std::ranges::min_element(sockets.begin() + kFirstConnection, sockets.end(),
                                               {}, &std::vector<SocketHandle>::size);
  native_->add(connection, static_cast<std::size_t>(fewest - sockets.begin()), kReads);
}

void SocketWatch::remove(SocketHandle socket) {
  const std::size_t place = native_->placeOf(socket);
  if (place == kEvents) return;
  ::WSAEventSelect(socket, nullptr, 0);
  std::erase(native_->sockets[place], socket);
  std::erase(native_->writing, socket);
}

void SocketWatch::setWrites(SocketHandle connection, bool writes) {
  auto& writing = native_->writing;
  const bool before = std::ranges::count(writing, connection) != 0;
  const std::size_t place = before == writes ? kEvents : native_->placeOf(connection);
  if (place == kEvents) return;
  std::erase(writing, connection);
  if (writes) writing.push_back(connection);
  // Only then: some systems tell of room after each send.
  ::WSAEventSelect(connection, native_->events[place], kReads | (writes ? FD_WRITE : 0));
}

void SocketWatch::again(SocketHandle connection) {
  const std::size_t place = native_->placeOf(connection);
  if (place != kEvents) ::SetEvent(native_->events[place]);
}

const std::vector<SocketHandle>& SocketWatch::wait(std::chrono::nanoseconds time) {
  told_.clear();
  // Rounded up: a wait that ends just before its time would be repeated until it has come.
  const auto limit = std::chrono::ceil<std::chrono::milliseconds>(time);
  const std::size_t used = native_->used();
  const std::size_t first = native_->next % used;
  std::array<HANDLE, kEvents> waited{};
  for (std::size_t i = 0; i < used; ++i) waited[i] = native_->events[(first + i) % used];
  const DWORD happened = ::WaitForMultipleObjects(static_cast<DWORD>(used), waited.data(), FALSE,
                                                  static_cast<DWORD>(limit.count()));
  if (happened >= WAIT_OBJECT_0 + used) return told_;
  const std::size_t place = (first + happened - WAIT_OBJECT_0) % used;
  native_->next = place + 1;
  native_->tell(place, told_);
  return told_;
}

void SocketWatch::wake() { ::SetEvent(native_->events[kWake]); }

}  // namespace kelvane
