#include "base/name_resolution.h"

#include <netdb.h>

#include <functional>
#include <optional>
#include <string>
#include <system_error>
#include <thread>
#include <utility>
#include <vector>

namespace kelvane {

std::optional<std::vector<NetAddress>> resolve(const std::string& host, const std::string& port,
                                               bool numericOnly) {
  addrinfo wanted{};
  wanted.ai_socktype = SOCK_STREAM;
  wanted.ai_flags = AI_NUMERICSERV | (numericOnly ? AI_NUMERICHOST : 0);
  addrinfo* found = nullptr;
  if (::getaddrinfo(host.c_str(), port.c_str(), &wanted, &found) != 0) return std::nullopt;
  auto addresses = addressesOf(found, AF_INET);
  ::freeaddrinfo(found);
  return addresses;
}

bool runDetached(std::function<void()> job) {
  try {
    std::thread(std::move(job)).detach();
    return true;
  } catch (const std::system_error&) {
    return false;
  }
}

}  // namespace kelvane
