#pragma once

#include <functional>
#include <optional>
#include <string>
#include <utility>

#include "base/tcp_client.h"

namespace kelvane::sondrel {

/// A short conversation with a server: a question, the first line of its answer. For a thread that
/// may wait; `stopped` is asked every few milliseconds and ends each waiting.
class ServerTalk {
 public:
  explicit ServerTalk(std::function<bool()> stopped) : stopped_(std::move(stopped)) {}

  /// Connects; where nobody listens yet, again and again until the limit. Answers whether it did.
  bool open(const std::string& host, std::int32_t port, milliseconds limit, bool keepTrying);
  /// Whether the connection stands, as far as is known.
  bool isOpen() const { return open_; }
  /// The first line of the answer; none where there is none in time, or the server left.
  std::optional<std::string> ask(const std::string& question, milliseconds limit);
  /// The rest of what came with the last answer, and comes until it is quiet for a while.
  std::string restOfAnswer(milliseconds quiet);

 private:
  TcpClient client_;
  std::function<bool()> stopped_;
  std::string received_;
  bool open_ = false;
};

/// The frequency that an answer consists of, Hz; 0 where it is anything else.
double hertzIn(const std::optional<std::string>& answer);

}  // namespace kelvane::sondrel
