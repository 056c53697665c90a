#pragma once

#include <array>
#include <cstdint>
#include <string_view>

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

/// The states of a link that is not up.
inline constexpr std::array kLinkFaults{
    LinkState::NotResponding,   LinkState::NoLoop,        LinkState::Timeout,
    LinkState::BadAddress,      LinkState::Configuration, LinkState::CannotOpen,
    LinkState::Error,           LinkState::BadIdentity,   LinkState::BadReceiverAddress,
    LinkState::BuiltInTestError};

/// The words for the code of a link that is not up; every code has some.
constexpr std::string_view linkFaultWords(std::int32_t code) {
  switch (static_cast<LinkState>(code)) {
    case LinkState::NoLoop:
      return "Link: No loop";
    case LinkState::Timeout:
      return "Link: Timeout";
    case LinkState::BadAddress:
      return "Link: Bad address";
    case LinkState::Configuration:
      return "Link: Configuration";
    case LinkState::CannotOpen:
      return "Link: Cannot open";
    case LinkState::Error:
      return "Link: Error";
    case LinkState::BadIdentity:
      return "Rx: Bad ID";
    case LinkState::BadReceiverAddress:
      return "Rx: Bad Address";
    case LinkState::BuiltInTestError:
      return "Rx: BITE Error";
    default:
      return "Rx: Not responding";
  }
}

}  // namespace kelvane
