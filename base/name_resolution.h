#pragma once

#include <cstring>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "base/socket.h"

namespace kelvane {

/// A host's addresses, IPv4 before IPv6, in the system's order else; none where there is no such
/// host. A name may hold the caller for long; `numericOnly` takes no name, and never does.
std::optional<std::vector<NetAddress>> resolve(const std::string& host, const std::string& port,
                                               bool numericOnly);

/// Runs the job on a thread that nobody waits for: it may outlive everything but the code that it
/// runs. Answers false where no thread can be started.
bool runDetached(std::function<void()> job);

/// The addresses of the system's list, whose entries are linked by `ai_next`.
template <class Info>
std::vector<NetAddress> addressesOf(const Info* found, int v4Family) {
  std::vector<NetAddress> addresses;
  // A server in the shack listens on IPv4; each refusal before it would cost the operator time.
  for (const bool v4 : {true, false}) {
    for (const Info* each = found; each != nullptr; each = each->ai_next) {
      NetAddress address;
      if ((each->ai_family == v4Family) != v4 || each->ai_addrlen > address.bytes.size()) continue;
      std::memcpy(address.bytes.data(), each->ai_addr, each->ai_addrlen);
      address.size = each->ai_addrlen;
      addresses.push_back(address);
    }
  }
  return addresses;
}

}  // namespace kelvane
