#pragma once

#include <algorithm>

#include "base/time.h"
#include "contract/link_state.h"

namespace kelvane::sondrel {

/// Whether a link in this state stays so until somebody changes a setting.
constexpr bool isLasting(LinkState state) {
  return state == LinkState::BadAddress || state == LinkState::Configuration ||
         state == LinkState::BadIdentity || state == LinkState::BadReceiverAddress;
}

/// Spaces out attempts that are bound to fail, so that whoever asks for a link again and again
/// disturbs neither a stranger's service nor the network: 1 s after the first, doubled to 30 s.
class LastingFailures {
 public:
  void failed(Instant now) {
    delay_ = std::clamp(delay_ * 2, kFirst, kLongest);
    notBefore_ = now + delay_;
  }
  /// There is hope again.
  void forget() { *this = {}; }
  /// No attempt before this time.
  Instant notBefore() const { return notBefore_; }

 private:
  static constexpr milliseconds kFirst{1000};
  static constexpr milliseconds kLongest{30'000};

  milliseconds delay_{0};
  Instant notBefore_ = Instant::min();
};

}  // namespace kelvane::sondrel
