#pragma once

#include <cstdint>

namespace kelvane {

/// State codes that `RxConnState` carries and `GetRxLinkState` answers.
enum class LinkState : std::int32_t {
  NotResponding = 999,  ///< the receiver is silent; the link itself needs no new attempt
  Up = 1000,
  NoLoop = 1002,
  Timeout = 1003,
  BadAddress = 1004,
  Configuration = 1005,
  CannotOpen = 1006,
  Error = 1010,
  BadIdentity = 1022,
  BadReceiverAddress = 1024,
  BuiltInTestError = 1025,
};

}  // namespace kelvane
