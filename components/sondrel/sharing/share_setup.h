#pragma once

#include <array>
#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "components/sondrel/receiver_entry.h"
#include "components/sondrel/sharing/shared_receiver.h"

namespace kelvane::sondrel {

Result<> checkShare(std::string_view text);
Result<> checkSharePort(std::string_view text);
Result<> checkShareHold(std::string_view text);
Result<> checkShareAddress(std::string_view text);
Result<> checkShareFrom(std::string_view text);

/// The keys by which a receiver of any kind is shared.
inline constexpr std::array kShareParameters{
    Parameter{"Share", "off", "what other programs may do with it: off, look or tune", checkShare},
    Parameter{"SharePort", "0", "TCP port for other programs; 0 for a free one from 4532",
              checkSharePort},
    Parameter{"ShareHold", "30",
              "how long programs get the last values when the link is lost, seconds",
              checkShareHold},
    Parameter{"ShareAddress", "", "this computer's address for programs on others; else none come",
              checkShareAddress},
    Parameter{"ShareFrom", "", "addresses that may come from elsewhere (192.168.1.0/24)",
              checkShareFrom},
};

/// A kind's own keys, and after them those by which it is shared.
template <std::size_t N>
constexpr auto withSharing(const std::array<Parameter, N>& own) {
  std::array<Parameter, N + kShareParameters.size()> all{};
  for (std::size_t i = 0; i < N; ++i) all[i] = own[i];
  for (std::size_t i = 0; i < kShareParameters.size(); ++i) all[N + i] = kShareParameters[i];
  return all;
}

/// How one receiver is shared.
struct ShareSetup {
  bool shared = false;
  SharePermission permission = SharePermission::Look;
  std::uint16_t port = 0;  ///< 0 for a free one
  milliseconds hold{0};
  std::string address;
  std::string from;

  bool operator==(const ShareSetup&) const = default;
};

/// A text that is wrong is said in `notes` and its key's standard used.
ShareSetup readShare(const ReceiverEntry& entry, std::vector<std::string>& notes);

/// The entry without what only says how it is shared.
ReceiverEntry withoutSharing(ReceiverEntry entry);

}  // namespace kelvane::sondrel
