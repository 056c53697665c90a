#include <netdb.h>

#include <algorithm>
#include <cstring>
#include <mutex>
#include <thread>

#include "base/barrier.h"
#include "base/socket.h"

namespace kelvane {

namespace {

std::optional<std::vector<NetAddress>> resolve(const std::string& host, const std::string& port,
                                               int flags) {
  addrinfo wanted{};
  wanted.ai_socktype = SOCK_STREAM;
  wanted.ai_flags = flags | AI_NUMERICSERV;
  addrinfo* found = nullptr;
  if (::getaddrinfo(host.c_str(), port.c_str(), &wanted, &found) != 0) return std::nullopt;
  std::vector<NetAddress> addresses;
  // A server in the shack listens on IPv4; each refusal before it would cost the operator time.
  for (const bool v4 : {true, false}) {
    for (const addrinfo* each = found; each != nullptr; each = each->ai_next) {
      NetAddress address;
      if ((each->ai_family == AF_INET) != v4 || each->ai_addrlen > address.bytes.size()) continue;
      std::memcpy(address.bytes.data(), each->ai_addr, each->ai_addrlen);
      address.size = each->ai_addrlen;
      addresses.push_back(address);
    }
  }
  ::freeaddrinfo(found);
  return addresses;
}

}  // namespace

struct NameLookup::Shared {
  std::mutex mutex;
  std::optional<std::vector<NetAddress>> result;
  std::shared_ptr<WakeUp> done;
};

NameLookup::NameLookup(const std::string& host, std::uint16_t port, std::shared_ptr<WakeUp> done)
    : shared_(std::make_shared<Shared>()) {
  const auto service = std::to_string(port);
  shared_->done = std::move(done);
  shared_->result = resolve(host, service, AI_NUMERICHOST);
  if (shared_->result) return;
  std::thread([shared = shared_, host, service] {
    std::vector<NetAddress> found;
    barrier("looking a name up",
            [&] { found = resolve(host, service, 0).value_or(std::vector<NetAddress>()); });
    {
      const std::lock_guard lock(shared->mutex);
      shared->result = std::move(found);
    }
    shared->done->signal();
  }).detach();
}

std::optional<std::vector<NetAddress>> NameLookup::result() const {
  const std::lock_guard lock(shared_->mutex);
  return shared_->result;
}

}  // namespace kelvane
