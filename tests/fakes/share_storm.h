#pragma once

#include <cstdint>
#include <span>
#include <string>

#include "tests/fakes/share_play.h"

namespace kelvane::fakes {

/// Drives a shared receiver's session with whatever bytes say, cut anywhere. Says what went wrong;
/// empty when nothing did.
class ShareStorm {
 public:
  std::string play(std::span<const std::uint8_t> bytes) {
    std::uint32_t mixed = 1;
    while (!bytes.empty() && wrong_.empty()) {
      // Cut by what the bytes are, so that a transcript is input as it stands.
      mixed = mixed * 31 + bytes[0];
      const std::size_t length = std::min<std::size_t>(mixed % 64 + 1, bytes.size());
      feed({reinterpret_cast<const char*>(bytes.data()), length});
      bytes = bytes.subspan(length);
    }
    return wrong_;
  }

 private:
  void feed(std::string_view bytes) {
    const bool ended = play_.session.ended();
    const std::string answers = play_.say(bytes);
    if (ended && !answers.empty()) wrong_ = "answered after the end: " + answers;
    if (!answers.empty() && answers.back() != '\n') wrong_ = "half a line: " + answers;
    check(play_.orders());
    play_.publish();
    if (play_.session.ended()) return;
    line_ += bytes;
    // Whatever was sent, the next command of a whole line is answered.
    if (line_.find('\n') == std::string::npos) return;
    line_.clear();
    if (!play_.say("\nt\n").ends_with("0\n") && !play_.session.ended()) {
      wrong_ = "no answer after: " + std::string(bytes);
    }
  }

  void check(const std::vector<sondrel::ShareOrder>& orders) {
    const sondrel::Capabilities& can = play_.traits.can;
    for (const sondrel::ShareOrder& order : orders) {
      const bool tunes = order.item == sondrel::Item::Frequency;
      if (tunes && (order.value < can.minimum || order.value > can.maximum)) {
        wrong_ = "out of range: " + std::to_string(order.value);
      }
      if (order.item == sondrel::Item::Mode && !can.mode(order.value)) wrong_ = "no such mode";
    }
  }

  SharePlay play_;
  std::string line_;
  std::string wrong_;
};

}  // namespace kelvane::fakes
