#pragma once

#include <atomic>
#include <functional>
#include <mutex>
#include <optional>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include "components/sondrel/radios/server_talk.h"

namespace kelvane::sondrel {

/// A place where a server may be.
struct ServerPlace {
  std::string host;
  std::int32_t port = 0;
  bool operator==(const ServerPlace&) const = default;
};

/// A server that answered.
struct FoundServer {
  ServerPlace place;
  std::string name;       ///< of its radio; empty where it tells none
  std::string frequency;  ///< "14074 kHz"; empty where it tells none
};

/// The usual ports on this computer, and on another one that the operator named (a host, or
/// host:port); none of those in `except`.
std::vector<ServerPlace> usualPlaces(const std::string& host,
                                     const std::vector<ServerPlace>& except);

/// Looks for servers at all of these places at once, and asks each only for its frequency and its
/// radio's name. On threads of its own; the destructor ends them within some milliseconds.
class ServerSearch {
 public:
  /// `wake` is called on another thread when there is more to see.
  explicit ServerSearch(const std::vector<ServerPlace>& places, std::function<void()> wake = {});
  ~ServerSearch();
  ServerSearch(const ServerSearch&) = delete;
  ServerSearch& operator=(const ServerSearch&) = delete;

  bool running() const { return running_ > 0; }
  /// Those found so far, in the order of their places.
  std::vector<FoundServer> found() const;

 private:
  void look(const ServerPlace& place, std::size_t rank);
  std::optional<std::string> firstAnswer(ServerTalk& talk, const ServerPlace& place);

  const std::function<void()> wake_;
  std::atomic<bool> stop_ = false;
  std::atomic<int> running_ = 0;
  mutable std::mutex mutex_;
  std::vector<std::pair<std::size_t, FoundServer>> found_;
  std::vector<std::thread> threads_;  ///< last: they use everything above
};

}  // namespace kelvane::sondrel
