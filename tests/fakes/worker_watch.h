#pragma once

#include <algorithm>
#include <condition_variable>
#include <functional>
#include <memory>
#include <mutex>
#include <string>
#include <vector>

#include "components/sondrel/rigctld_capabilities.h"
#include "components/sondrel/rigctld_worker.h"

namespace kelvane::fakes {

/// A worker with what it reported so far.
class WorkerWatch {
 public:
  explicit WorkerWatch(sondrel::RigctldAddress address)
      : worker(std::make_unique<sondrel::RigctldWorker>(
            std::move(address), sondrel::RigctldOptions{},
            [this](std::vector<sondrel::RigReport> reports, std::uint32_t) { keep(reports); })) {}

  /// Waits until the link's newest state is this one; false after half a minute.
  bool becomes(LinkState state) {
    return wait([&] { return !links_.empty() && links_.back() == state; });
  }
  /// Waits until the link has been in this state so many times.
  bool becomesAgain(LinkState state, long times) {
    return wait([&] { return std::count(links_.begin(), links_.end(), state) >= times; });
  }
  bool hears(const std::function<bool(const sondrel::ValueReport&)>& value) {
    return wait([&] { return std::any_of(values_.begin(), values_.end(), value); });
  }
  std::vector<LinkState> links() {
    const std::lock_guard lock(mutex_);
    return links_;
  }

 private:
  bool wait(const std::function<bool()>& come) {
    std::unique_lock lock(mutex_);
    return news_.wait_for(lock, std::chrono::seconds(30), come);
  }
  void keep(const std::vector<sondrel::RigReport>& reports) {
    const std::lock_guard lock(mutex_);
    for (const auto& report : reports) {
      if (const auto* link = std::get_if<sondrel::LinkReport>(&report))
        links_.push_back(link->state);
      if (const auto* value = std::get_if<sondrel::ValueReport>(&report)) values_.push_back(*value);
    }
    news_.notify_all();
  }

  std::mutex mutex_;
  std::condition_variable news_;
  std::vector<LinkState> links_;
  std::vector<sondrel::ValueReport> values_;

 public:
  std::unique_ptr<sondrel::RigctldWorker> worker;  ///< last: it reports into the rest
};

}  // namespace kelvane::fakes
