#include "components/sondrel/inbox.h"

#include <utility>

#include "base/barrier.h"

namespace kelvane::sondrel {

Inbox::Inbox(std::function<void()> wake) : wake_(std::move(wake)) {}

void Inbox::post(std::function<void()> work) {
  const std::lock_guard lock(mutex_);
  if (closed_) return;
  waiting_.push_back(std::move(work));
  // Under the lock, so that shut() can promise that nobody is woken after it.
  if (waiting_.size() == 1) wake_();
}

void Inbox::run() {
  std::vector<std::function<void()>> batch;
  {
    const std::lock_guard lock(mutex_);
    batch.swap(waiting_);
  }
  // One that fails takes none of the others with it.
  for (const auto& work : batch) barrier("taking in a receiver's answer", work);
}

void Inbox::shut() {
  const std::lock_guard lock(mutex_);
  closed_ = true;
  waiting_.clear();
}

void Mailbox::post(std::function<void()> work) const {
  inbox_->post([open = open_, work = std::move(work)] {
    if (*open) work();
  });
}

}  // namespace kelvane::sondrel
