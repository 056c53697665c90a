#pragma once

#include <array>
#include <cstddef>
#include <string>
#include <vector>

#include "components/sondrel/receiver_entry.h"
#include "components/sondrel/sharing/shared_receiver.h"

namespace kelvane::sondrel {

std::string shareProblem(std::string_view text);
std::string sharePortProblem(std::string_view text);
std::string shareHoldProblem(std::string_view text);
std::string shareAddressProblem(std::string_view text);
std::string shareFromProblem(std::string_view text);

/// The keys by which a receiver of any kind is shared.
inline constexpr std::array kShareParameters{
    Parameter{"Share", "off", "what other programs may do with it: off, look or tune",
              shareProblem},
    Parameter{"SharePort", "0", "TCP port for other programs; 0 for a free one from 4532",
              sharePortProblem},
    Parameter{"ShareHold", "30",
              "how long programs get the last values when the link is lost, seconds",
              shareHoldProblem},
    Parameter{"ShareAddress", "", "this computer's address for programs on others; else none come",
              shareAddressProblem},
    Parameter{"ShareFrom", "", "addresses that may come from elsewhere (192.168.1.0/24)",
              shareFromProblem},
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
