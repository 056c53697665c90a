#include "base/socket.h"

#include <winsock2.h>
#include <ws2tcpip.h>
// After them, as it needs their types.
#include <mstcpip.h>

#include <algorithm>
#include <system_error>

namespace kelvane {

/// Winsock counts its users.
struct WinsockUse {
  WinsockUse() {
    WSADATA data;
    ::WSAStartup(MAKEWORD(2, 2), &data);
  }
  ~WinsockUse() { ::WSACleanup(); }
  WinsockUse(const WinsockUse&) = delete;
  WinsockUse& operator=(const WinsockUse&) = delete;
};

namespace {

NetFailure failureOf(int error) {
  switch (error) {
    case WSAECONNREFUSED:
      return NetFailure::Refused;
    case WSAENETUNREACH:
    case WSAEHOSTUNREACH:
    case WSAENETDOWN:
      return NetFailure::Unreachable;
    case WSAETIMEDOUT:
      return NetFailure::TimedOut;
    case WSAEADDRNOTAVAIL:
    case WSAEAFNOSUPPORT:
      return NetFailure::BadAddress;
    default:
      return NetFailure::Ended;
  }
}

bool isLoopback(const NetAddress& address) {
  const auto* where = reinterpret_cast<const sockaddr*>(address.bytes.data());
  if (where->sa_family == AF_INET) {
    const auto* v4 = reinterpret_cast<const sockaddr_in*>(where);
    return (ntohl(v4->sin_addr.s_addr) >> 24) == 127;
  }
  const auto* v6 = reinterpret_cast<const sockaddr_in6*>(where);
  return IN6_IS_ADDR_LOOPBACK(&v6->sin6_addr) != 0;
}

/// Windows asks again for two seconds before it believes that nobody listens. On the same machine
/// nothing gets lost on the way.
void failOnFirstRefusal(SOCKET handle) {
#ifdef SIO_TCP_INITIAL_RTO
  TCP_INITIAL_RTO_PARAMETERS once{};
  once.Rtt = TCP_INITIAL_RTO_UNSPECIFIED_RTT;
  once.MaxSynRetransmissions = TCP_INITIAL_RTO_NO_SYN_RETRANSMISSIONS;
  DWORD size = 0;
  ::WSAIoctl(handle, SIO_TCP_INITIAL_RTO, &once, sizeof once, nullptr, 0, &size, nullptr, nullptr);
#else
  (void)handle;
#endif
}

}  // namespace

struct WakeUp::Native {
  WinsockUse winsock;
  WSAEVENT event = ::WSACreateEvent();
};

WakeUp::WakeUp() : native_(std::make_unique<Native>()) {
  if (native_->event == WSA_INVALID_EVENT) {
    throw std::system_error(::WSAGetLastError(), std::system_category(), "event");
  }
}

WakeUp::~WakeUp() { ::WSACloseEvent(native_->event); }

void WakeUp::signal() { ::WSASetEvent(native_->event); }

struct TcpSocket::Native {
  WinsockUse winsock;
  WSAEVENT event = ::WSACreateEvent();
  SOCKET handle = INVALID_SOCKET;
  std::string unsent;
  bool ended = false;  ///< the end was announced; what came before it may still be received

  ~Native() { ::WSACloseEvent(event); }
};

TcpSocket::TcpSocket(std::shared_ptr<WakeUp> wake)
    : wake_(std::move(wake)), native_(std::make_unique<Native>()) {}

TcpSocket::~TcpSocket() { close(); }

std::optional<NetFailure> TcpSocket::begin(const NetAddress& address) {
  close();
  const auto* where = reinterpret_cast<const sockaddr*>(address.bytes.data());
  auto& handle = native_->handle;
  handle = ::WSASocketW(where->sa_family, SOCK_STREAM, IPPROTO_TCP, nullptr, 0,
                        WSA_FLAG_OVERLAPPED | WSA_FLAG_NO_HANDLE_INHERIT);
  if (handle == INVALID_SOCKET) return failureOf(::WSAGetLastError());
  const BOOL on = TRUE;
  ::setsockopt(handle, IPPROTO_TCP, TCP_NODELAY, reinterpret_cast<const char*>(&on), sizeof on);
  if (isLoopback(address)) failOnFirstRefusal(handle);
  ::WSAEventSelect(handle, native_->event, FD_CONNECT | FD_READ | FD_WRITE | FD_CLOSE);
  const int result = ::connect(handle, where, static_cast<int>(address.size));
  const int error = result == 0 ? 0 : ::WSAGetLastError();
  if (error == 0 || error == WSAEWOULDBLOCK) return std::nullopt;
  close();
  return failureOf(error);
}

void TcpSocket::close() {
  if (native_->handle != INVALID_SOCKET) ::closesocket(native_->handle);
  native_->handle = INVALID_SOCKET;
  native_->unsent.clear();
  native_->ended = false;
  ::WSAResetEvent(native_->event);
}

TcpSocket::Events TcpSocket::wait(std::chrono::nanoseconds time) {
  Events events;
  if (native_->ended) {
    events.readable = true;
    return events;
  }
  const WSAEVENT handles[2] = {wake_->native_->event, native_->event};
  // Rounded up: a wait that ends just before its time would be repeated until it has come.
  const auto limit = std::chrono::ceil<std::chrono::milliseconds>(time);
  ::WSAWaitForMultipleEvents(2, handles, FALSE, static_cast<DWORD>(limit.count()), FALSE);
  ::WSAResetEvent(wake_->native_->event);
  WSANETWORKEVENTS happened{};
  if (native_->handle == INVALID_SOCKET) return events;
  if (::WSAEnumNetworkEvents(native_->handle, native_->event, &happened) != 0) return events;
  if ((happened.lNetworkEvents & FD_CONNECT) != 0) {
    const int error = happened.iErrorCode[FD_CONNECT_BIT];
    events.connected = error == 0;
    if (error != 0) {
      events.failed = failureOf(error);
      close();
      return events;
    }
  }
  if ((happened.lNetworkEvents & FD_WRITE) != 0 && !send({})) events.failed = NetFailure::Ended;
  native_->ended = (happened.lNetworkEvents & FD_CLOSE) != 0;
  events.readable = native_->ended || (happened.lNetworkEvents & FD_READ) != 0;
  return events;
}

bool TcpSocket::receive(std::string& bytes) {
  char buffer[16384];
  const int count = ::recv(native_->handle, buffer, sizeof buffer, 0);
  if (count > 0) bytes.append(buffer, static_cast<std::size_t>(count));
  return count > 0 || (count < 0 && ::WSAGetLastError() == WSAEWOULDBLOCK && !native_->ended);
}

bool TcpSocket::send(std::string_view bytes) {
  auto& unsent = native_->unsent;
  const bool queued = !unsent.empty();
  if (queued) unsent += bytes;
  const std::string_view all = queued ? std::string_view(unsent) : bytes;
  if (all.empty()) return true;
  const int count = ::send(native_->handle, all.data(), static_cast<int>(all.size()), 0);
  if (count < 0 && ::WSAGetLastError() != WSAEWOULDBLOCK) return false;
  const auto sent = static_cast<std::size_t>(std::max(count, 0));
  if (queued)
    unsent.erase(0, sent);
  else
    unsent.assign(all.substr(sent));
  return true;
}

}  // namespace kelvane
