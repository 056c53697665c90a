#include "components/ambrel/event_queue.h"

#include <algorithm>

#include "base/barrier.h"

namespace kelvane::ambrel {

void EventQueue::post(std::function<void()> action) {
  {
    const std::lock_guard lock(mutex_);
    waiting_.push_back(std::move(action));
  }
  wake_();
}

void EventQueue::deliver() {
  std::vector<std::function<void()>> actions;
  {
    const std::lock_guard lock(mutex_);
    actions.swap(waiting_);
  }
  // One that fails takes none of the others with it.
  for (const auto& action : actions) barrier("delivering what was read", action);
}

void EventQueue::tell(const std::function<void(FrequencyListener&)>& event) {
  const std::vector<FrequencyListener*> listeners = listeners_;
  for (FrequencyListener* listener : listeners) {
    const bool stays =
        std::find(listeners_.begin(), listeners_.end(), listener) != listeners_.end();
    if (stays) event(*listener);
  }
}

}  // namespace kelvane::ambrel
