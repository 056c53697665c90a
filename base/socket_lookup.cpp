#include <mutex>
#include <utility>

#include "base/barrier.h"
#include "base/name_resolution.h"
#include "base/socket.h"

namespace kelvane {

struct NameLookup::Shared {
  std::mutex mutex;
  std::optional<std::vector<NetAddress>> result;
  std::shared_ptr<WakeUp> done;

  void finish(std::vector<NetAddress> addresses) {
    {
      const std::lock_guard lock(mutex);
      result = std::move(addresses);
    }
    done->signal();
  }
};

NameLookup::NameLookup(const std::string& host, std::uint16_t port, std::shared_ptr<WakeUp> done)
    : shared_(std::make_shared<Shared>()) {
  const auto service = std::to_string(port);
  shared_->done = std::move(done);
  shared_->result = resolve(host, service, true);
  if (shared_->result) return;
  const bool started = runDetached([shared = shared_, host, service] {
    std::vector<NetAddress> found;
    barrier("looking a name up",
            [&] { found = resolve(host, service, false).value_or(std::vector<NetAddress>()); });
    shared->finish(std::move(found));
  });
  if (!started) shared_->finish({});
}

std::optional<std::vector<NetAddress>> NameLookup::result() const {
  const std::lock_guard lock(shared_->mutex);
  return shared_->result;
}

}  // namespace kelvane
