#pragma once

#include <chrono>
#include <memory>
#include <vector>

#include "base/server_socket.h"

namespace kelvane {

/// Waits for any of several sockets. Used on one thread; wake() from any.
class SocketWatch {
 public:
  SocketWatch();
  ~SocketWatch();
  SocketWatch(const SocketWatch&) = delete;
  SocketWatch& operator=(const SocketWatch&) = delete;

  /// Where programs ask for connections.
  void addListener(SocketHandle listener);
  /// One program's connection.
  void addConnection(SocketHandle connection);
  /// Before the socket is closed; nothing where it is not watched.
  void remove(SocketHandle socket);
  /// Whether bytes wait for room in this connection: room is looked for, too.
  void setWrites(SocketHandle connection, bool writes);
  /// The connection was not read to its end: the next wait tells it again.
  void again(SocketHandle connection);

  /// Waits until something may have happened, wake() was called, or the time is over. Answers the
  /// sockets to look at: there may be nothing new at some of them, and what is not read, accepted
  /// or written until nothing is left is not always told a second time.
  const std::vector<SocketHandle>& wait(std::chrono::nanoseconds time);
  /// Ends a wait, or the next one where nobody waits.
  void wake();

 private:
  struct Native;
  std::unique_ptr<Native> native_;
  std::vector<SocketHandle> told_;
};

}  // namespace kelvane
