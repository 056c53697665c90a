#pragma once

#include <array>
#include <chrono>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace kelvane {

/// Why a connection could not be opened, or ended.
enum class NetFailure {
  BadAddress,   ///< no such host, or no such port
  Refused,      ///< nobody listens at that port
  Unreachable,  ///< no way to that network or host
  TimedOut,     ///< nobody answered the attempt
  Ended,        ///< closed or reset by the other side, or gone wrong
};

/// One place to connect to, in the system's own form.
struct NetAddress {
  alignas(8) std::array<std::byte, 128> bytes{};
  std::size_t size = 0;
};

/// Ends a wait of TcpSocket from another thread. A signal that comes while nobody waits ends the
/// next wait.
class WakeUp {
 public:
  WakeUp();
  ~WakeUp();
  WakeUp(const WakeUp&) = delete;
  WakeUp& operator=(const WakeUp&) = delete;

  /// From any thread.
  void signal();

 private:
  friend class TcpSocket;
  struct Native;
  std::unique_ptr<Native> native_;
};

/// Looks up a name on a thread of its own: the system's way of doing so can block for long, and
/// cannot be ended. What is not waited for any more ends by itself.
class NameLookup {
 public:
  /// Signals `done` when there is a result. A numeric address needs no thread, and has its result
  /// at once.
  NameLookup(const std::string& host, std::uint16_t port, std::shared_ptr<WakeUp> done);

  /// The addresses, IPv4 before IPv6, in the system's order else; empty where there is no such
  /// name; none while the lookup runs.
  std::optional<std::vector<NetAddress>> result() const;

 private:
  struct Shared;
  std::shared_ptr<Shared> shared_;
};

/// One TCP connection. Nothing but wait() ever blocks.
class TcpSocket {
 public:
  struct Events {
    bool connected = false;  ///< the connection has just come about
    bool readable = false;   ///< bytes, or the end of the connection, wait to be received
    std::optional<NetFailure> failed;
  };

  explicit TcpSocket(std::shared_ptr<WakeUp> wake);
  ~TcpSocket();
  TcpSocket(const TcpSocket&) = delete;
  TcpSocket& operator=(const TcpSocket&) = delete;

  /// Begins a connection, after closing an older one; wait() tells what comes of it.
  std::optional<NetFailure> begin(const NetAddress& address);
  void close();

  /// Waits until something happens, a signal comes, or the time is over.
  Events wait(std::chrono::nanoseconds time);
  /// Appends what has arrived; answers false when the connection has ended.
  bool receive(std::string& bytes);
  /// Sends as one piece; what the system does not take at once goes out during wait(). Answers
  /// false when the connection has ended.
  bool send(std::string_view bytes);

 private:
  struct Native;
  std::shared_ptr<WakeUp> wake_;
  std::unique_ptr<Native> native_;
};

}  // namespace kelvane
