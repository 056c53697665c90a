#include <memory>
#include <mutex>

#include "components/sondrel/rigctld/rigctld_receiver.h"
#include "components/sondrel/rigctld/rigctld_words.h"

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
    if (!fault_) return result_;
    const std::string words = worker_.fault();
    return words.empty() ? inWords(*fault_, address_) : words;
  }

 private:
  /// On the worker's thread.
  void keep(const std::vector<RigReport>& reports) {
    const std::lock_guard lock(mutex_);
    for (const auto& report : reports) {
      if (const auto* found = std::get_if<CapabilityReport>(&report)) {
        result_ = inWords(*found->found);
        fault_.reset();
      }
      const auto* link = std::get_if<LinkReport>(&report);
      if (link && link->state != LinkState::Up) fault_ = link->state;
    }
  }

  const RigctldAddress address_;
  std::mutex mutex_;
  std::optional<std::string> result_;
  std::optional<LinkState> fault_;  ///< newer than the result
  RigctldWorker worker_;            ///< last: it reports into the rest
};

}  // namespace

std::unique_ptr<LinkTrial> tryOutRigctld(const RigctldAddress& address,
                                         const RigctldOptions& options) {
  return std::make_unique<RigctldTrial>(address, options);
}

}  // namespace kelvane::sondrel
