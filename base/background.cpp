#include "base/background.h"

#include <utility>

namespace kelvane {

Background::~Background() {
  {
    const std::lock_guard lock(mutex_);
    ending_ = true;
  }
  changed_.notify_all();
  if (thread_.joinable()) thread_.join();
}

void Background::run(std::string what, std::function<void()> job, Failed failed) {
  const auto start = [&] {
    const std::lock_guard lock(mutex_);
    if (!thread_.joinable()) thread_ = std::thread([this] { work(); });
    jobs_.push_back({what, std::move(job), failed});
  };
  barrier(what, start, failed);
  changed_.notify_all();
}

void Background::finish() {
  std::unique_lock lock(mutex_);
  changed_.wait(lock, [this] { return jobs_.empty() && !working_; });
}

void Background::work() {
  std::unique_lock lock(mutex_);
  for (;;) {
    changed_.wait(lock, [this] { return ending_ || !jobs_.empty(); });
    if (jobs_.empty()) return;
    const Job job = std::move(jobs_.front());
    jobs_.pop_front();
    working_ = true;
    lock.unlock();
    barrier(job.what, job.work, job.failed);
    lock.lock();
    working_ = false;
    changed_.notify_all();
  }
}

}  // namespace kelvane
