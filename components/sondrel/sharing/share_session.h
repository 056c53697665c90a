#pragma once

#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "base/time.h"
#include "components/sondrel/sharing/share_command.h"
#include "components/sondrel/sharing/shared_receiver.h"

namespace kelvane::sondrel {

class ShareReply;

/// One program that uses a shared receiver by the rigctl network protocol, fed with the bytes that
/// it sends. Every command is answered, at once and from what is known: nothing here waits for a
/// radio. What would transmit is refused always.
class ShareSession {
 public:
  /// `client` is who asks, for those who want to know who moved the receiver. `receiver` outlives
  /// the session. `wake` is called when orders wait for the user-interface thread.
  ShareSession(SharedReceiver& receiver, std::string client, std::function<void()> wake);

  void received(std::string_view bytes);
  /// The answers to the next of the lines that have arrived, some 16 KB of them at most; to be
  /// called until it is empty.
  std::string answer(Instant now);
  /// The program has said good-bye, or sent what is no such protocol: once the answers are sent the
  /// connection is closed.
  bool ended() const { return ended_; }
  /// When the last command came; none before the first.
  std::optional<Instant> lastAsked() const { return lastAsked_; }
  const std::string& client() const { return client_; }

 private:
  void answerLine(std::string_view line, std::string& out, Instant now);

  SharedReceiver& receiver_;
  std::string client_;
  std::function<void()> wake_;
  std::string input_;
  std::size_t read_ = 0;  ///< of the input, what has been answered
  std::optional<Instant> lastAsked_;
  bool vfoOption_ = false;
  bool ended_ = false;
};

/// What answers a command: the command, the receiver as it is now, and the way to change it.
struct Asked {
  const ShareCommand& command;
  const SharedFacts& facts;
  ShareReply& reply;
  Instant now;
  bool& vfoOption;  ///< this connection names a VFO with each command
  bool& ended;
  std::vector<ShareOrder>& orders;
};

}  // namespace kelvane::sondrel
