#pragma once

#include <functional>
#include <mutex>
#include <utility>
#include <vector>

#include "contract/components.h"

namespace kelvane::ambrel {

/// What waits for the user-interface thread, put in from any thread, and the listeners that are
/// told there.
class EventQueue {
 public:
  explicit EventQueue(std::function<void()> wake) : wake_(std::move(wake)) {}

  void addListener(FrequencyListener& listener) { listeners_.push_back(&listener); }
  void removeListener(FrequencyListener& listener) { std::erase(listeners_, &listener); }

  /// Puts something in to be done by `deliver`, and wakes. From any thread.
  void post(std::function<void()> action);

  /// Does all that waits, in order. What is put in meanwhile waits for the next wake.
  void deliver();

  /// Tells every listener; a listener that is removed by another's doing is not told any more.
  void tell(const std::function<void(FrequencyListener&)>& event);

 private:
  std::function<void()> wake_;
  std::vector<FrequencyListener*> listeners_;
  std::mutex mutex_;
  std::vector<std::function<void()>> waiting_;
};

}  // namespace kelvane::ambrel
