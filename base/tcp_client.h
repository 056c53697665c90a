#pragma once

#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "base/socket.h"
#include "base/time.h"

namespace kelvane {

/// A connection to a named host: looks the name up, tries its addresses one after the other, and
/// carries bytes. For one thread; nothing but wait() blocks, and wake() ends that from any thread.
class TcpClient {
 public:
  struct Events {
    bool opened = false;
    std::string_view received;         ///< valid until the next call
    std::optional<NetFailure> failed;  ///< the client is closed then
  };

  TcpClient();

  /// Begins to connect, after closing an older connection; wait() tells what comes of it. Each
  /// address is given up after a few seconds. A port outside 1 to 65535 fails.
  void open(const std::string& host, std::int32_t port, Instant now);
  void close();

  /// Goes on with what is due, then waits until something happens, wake() is called, or `until` has
  /// come. May return early with nothing; to be called again and again.
  Events wait(Instant now, Instant until);
  /// Only between opened and closed.
  void send(std::string_view bytes);

  /// From any thread. A call while nobody waits ends the next wait at once.
  void wake() { wake_->signal(); }

 private:
  enum class State { Closed, LookingUp, NextAddress, Connecting, Open, Broken };

  std::optional<NetFailure> advance(Instant now);
  bool tryNext(Instant now);
  Events fail(NetFailure failure);

  std::shared_ptr<WakeUp> wake_ = std::make_shared<WakeUp>();
  TcpSocket socket_{wake_};
  State state_ = State::Closed;
  std::unique_ptr<NameLookup> lookup_;
  std::vector<NetAddress> addresses_;
  std::size_t next_ = 0;
  NetFailure lastFailure_ = NetFailure::BadAddress;
  Instant giveUpAt_ = kNever;
  std::string received_;
};

}  // namespace kelvane
