#include "base/socket_watch.h"

#include <winsock2.h>

#include <algorithm>
#include <array>
#include <chrono>
#include <system_error>

namespace kelvane {

namespace {

/// As many events as one wait can have, with those for wake() and for all listeners.
constexpr std::size_t kEvents = MAXIMUM_WAIT_OBJECTS;
constexpr std::size_t kWake = 0;
constexpr std::size_t kListeners = 1;
constexpr std::size_t kFirstConnection = 2;
/// More connections than that are a crowd, with one event for all.
constexpr std::size_t kMostWithOwnEvents = 24;
/// A crowd that becomes smaller than that has events of its own again.
constexpr std::size_t kFewestInCrowd = 12;
constexpr std::chrono::milliseconds kCrowdPause{4};
constexpr long kReads = FD_READ | FD_CLOSE;

}  // namespace

// An event of its own for each of a few connections: one wait for it costs less than asking after
// each socket, and who asks again at once is answered at once. Of a crowd those that spoke within a
// few milliseconds are found by one question for all, which costs each of them the less the more
// they are.
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
  void addConnection(SocketHandle socket) {
    const auto fewest = std::ranges::min_element(sockets.begin() + kFirstConnection, sockets.end(),
                                                 {}, &std::vector<SocketHandle>::size);
    const std::size_t own = static_cast<std::size_t>(fewest - sockets.begin());
    add(socket, crowded ? kFirstConnection : own, happeningsOf(socket));
  }
  bool writes(SocketHandle socket) const { return std::ranges::count(writing, socket) != 0; }
  long happeningsOf(SocketHandle socket) const { return kReads | (writes(socket) ? FD_WRITE : 0); }

  /// After a connection came or went. What waits at a connection is told anew at its new event.
  void arrange() {
    std::vector<SocketHandle> all;
    for (std::size_t place = kFirstConnection; place < kEvents; ++place) {
      all.insert(all.end(), sockets[place].begin(), sockets[place].end());
    }
    const bool many = all.size() > (crowded ? kFewestInCrowd : kMostWithOwnEvents);
    if (many == crowded) return;
    crowded = many;
    for (std::size_t place = kFirstConnection; place < kEvents; ++place) sockets[place].clear();
    for (const SocketHandle socket : all) addConnection(socket);
  }

  /// Lets a crowd speak for a moment, if it was heard just now; wake() ends the pause.
  void pauseForCrowd() {
    const auto now = std::chrono::steady_clock::now();
    if (now < crowdHeard + kCrowdPause) {
      const auto rest =
          std::chrono::ceil<std::chrono::milliseconds>(crowdHeard + kCrowdPause - now);
      const DWORD how = ::WaitForSingleObject(events[kWake], static_cast<DWORD>(rest.count()));
      if (how == WAIT_OBJECT_0) ::SetEvent(events[kWake]);
    }
    crowdHeard = std::chrono::steady_clock::now();
    // Whatever was told of until now is found by asking.
    ::ResetEvent(events[kFirstConnection]);
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
      asked.push_back(
          {socket, static_cast<SHORT>(POLLRDNORM | (writes(socket) ? POLLWRNORM : 0)), 0});
    }
    if (::WSAPoll(asked.data(), static_cast<ULONG>(asked.size()), 0) <= 0) return;
    for (const WSAPOLLFD& seen : asked) {
      if (seen.revents != 0) told.push_back(seen.fd);
    }
  }

  std::array<HANDLE, kEvents> events{};
  std::array<std::vector<SocketHandle>, kEvents> sockets;
  std::vector<SocketHandle> writing;  ///< for which bytes wait
  bool crowded = false;               ///< all connections have the first one's event
  std::chrono::steady_clock::time_point crowdHeard;
  std::size_t next = 0;  ///< whose turn it is, so that a busy one holds up nobody
};

SocketWatch::SocketWatch() : native_(std::make_unique<Native>()) {}

SocketWatch::~SocketWatch() = default;

void SocketWatch::addListener(SocketHandle listener) {
  native_->add(listener, kListeners, FD_ACCEPT);
}

void SocketWatch::addConnection(SocketHandle connection) {
  native_->addConnection(connection);
  native_->arrange();
}

void SocketWatch::remove(SocketHandle socket) {
  const std::size_t place = native_->placeOf(socket);
  if (place == kEvents) return;
  ::WSAEventSelect(socket, nullptr, 0);
  std::erase(native_->sockets[place], socket);
  std::erase(native_->writing, socket);
  native_->arrange();
}

void SocketWatch::setWrites(SocketHandle connection, bool writes) {
  auto& writing = native_->writing;
  const bool before = native_->writes(connection);
  const std::size_t place = before == writes ? kEvents : native_->placeOf(connection);
  if (place == kEvents) return;
  std::erase(writing, connection);
  if (writes) writing.push_back(connection);
  // Only then: some systems tell of room after each send.
  ::WSAEventSelect(connection, native_->events[place], native_->happeningsOf(connection));
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
  if (native_->crowded && place == kFirstConnection) native_->pauseForCrowd();
  native_->tell(place, told_);
  return told_;
}

void SocketWatch::wake() { ::SetEvent(native_->events[kWake]); }

}  // namespace kelvane
