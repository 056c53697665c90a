#include <mutex>

#include "components/sondrel/rigctld_receiver.h"
#include "components/sondrel/rigctld_words.h"

namespace kelvane::sondrel {

namespace {

/// One link that nobody tunes, until it is up and has told what it can do, or is not.
class RigctldTrial final : public LinkTrial {
 public:
  RigctldTrial(const RigctldAddress& address, const RigctldOptions& options)
      : address_(address),
        worker_(address, options, [this](const auto& reports, std::uint32_t) { keep(reports); }) {
    worker_.open(false);
  }

  std::optional<std::string> result() override {
    const std::lock_guard lock(mutex_);
    return result_;
  }

 private:
  /// On the worker's thread.
  void keep(const std::vector<RigReport>& reports) {
    const std::lock_guard lock(mutex_);
    for (const auto& report : reports) {
      if (const auto* found = std::get_if<CapabilityReport>(&report)) {
        result_ = inWords(*found->found);
      }
      const auto* link = std::get_if<LinkReport>(&report);
      if (link && link->state != LinkState::Up) result_ = inWords(link->state, address_);
    }
  }

  const RigctldAddress address_;
  std::mutex mutex_;
  std::optional<std::string> result_;
  RigctldWorker worker_;  ///< last: it reports into the rest
};

}  // namespace

std::unique_ptr<LinkTrial> tryOutRigctld(const RigctldAddress& address,
                                         const RigctldOptions& options) {
  return std::make_unique<RigctldTrial>(address, options);
}

}  // namespace kelvane::sondrel
