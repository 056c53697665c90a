#pragma once

#include <string_view>

#include "components/sondrel/receiver.h"

namespace kelvane::sondrel {

/// The two-key commands of one receiver: M and a letter for a mode, F for a filter, A for an AGC
/// setting, P for the preselector.
class KeyPairs {
 public:
  /// Takes one typed character. True for the second key of a pair, whether or not the receiver has
  /// the setting; every other key is somebody else's.
  bool press(std::string_view key, Receiver& receiver, Instant now);
  /// What was typed is over: no key waits for its second one.
  void end() {
    first_ = 0;
    number_ = false;
  }

 private:
  char first_ = 0;       ///< waits for its second key
  bool number_ = false;  ///< the last key belongs to a typed number
};

}  // namespace kelvane::sondrel
