#pragma once

#include <chrono>
#include <cstdint>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <thread>
#include <vector>

#include "base/socket_watch.h"
#include "components/sondrel/sharing/share_session.h"

namespace kelvane::sondrel {

/// Where one receiver is served, and for whom.
struct SharePlace {
  std::string key;  ///< names the receiver, whatever its place or name
  std::shared_ptr<SharedReceiver> receiver;
  std::string address;     ///< numeric; empty for this computer alone, by both families
  std::string from;        ///< addresses that may come besides this computer's own
  std::uint16_t port = 0;  ///< 0 for the first free even one from `firstPort`
  std::uint16_t firstPort = 0;

  bool operator==(const SharePlace&) const = default;
};

/// What is to be seen of one served receiver.
struct ShareView {
  std::string key;
  std::string address;  ///< where it is reached ("127.0.0.1:4532"); empty where it is not
  std::string problem;  ///< why it is not reached, in words
  std::vector<std::string> clients;

  bool operator==(const ShareView&) const = default;
};

/// Serves all shared receivers on one thread. Every function may be called from any thread and
/// returns at once; the destructor waits only for the thread to take notice.
///
/// A program that does not read its answers is closed before it costs more than 64 KB, and keeps
/// nobody waiting. There are 200 programs at most; one more is closed at once. A port that is taken
/// is tried again every few seconds.
class ShareServer {
 public:
  struct Callbacks {
    std::function<void(const std::string& key)> ordered;  ///< orders wait at that receiver
    std::function<void()> changed;                        ///< views() answers something else
  };

  /// Both are called on the server's thread and must not block.
  explicit ShareServer(Callbacks callbacks);
  ~ShareServer();
  ShareServer(const ShareServer&) = delete;
  ShareServer& operator=(const ShareServer&) = delete;

  /// What is served from now on. A place that stays as it was keeps its programs.
  void serve(std::vector<SharePlace> places);
  /// Closes the connection of the program at that address, if it is still there.
  void end(const std::string& client);
  std::vector<ShareView> views() const;

 private:
  struct Port;
  struct Client;

  void run();
  void round();
  void takeMail();
  void openPorts(Instant now);
  std::chrono::nanoseconds timeUntilDue(Instant now) const;
  void look(SocketHandle socket, Instant now);
  void accept(Port& port, SocketHandle listener, Instant now);
  void read(Client& client, Instant now);
  void answer(Client& client, Instant now);
  void write(Client& client);
  void closeEnded();
  void show();

  Callbacks callbacks_;
  SocketUse use_;
  SocketWatch watch_;
  std::vector<std::unique_ptr<Port>> ports_;
  std::vector<std::unique_ptr<Client>> clients_;
  bool stale_ = false;  ///< views_ may be out of date
  mutable std::mutex mutex_;
  bool stop_ = false;
  std::optional<std::vector<SharePlace>> places_;
  std::vector<std::string> endings_;
  std::vector<ShareView> views_;
  std::thread thread_;  ///< last: it uses everything above
};

}  // namespace kelvane::sondrel
