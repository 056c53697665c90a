#pragma once

#include <functional>
#include <utility>

#include "base/wall_time.h"
#include "contract/components.h"
#include "diagnostics/link_history.h"

namespace kelvane {

/// Hands every event of the receiver component on, after noting those that concern the links, and
/// says afterwards that one was handed on.
class NotedEvents : public ReceiverListener {
 public:
  NotedEvents(LinkHistory& history, ReceiverListener& next, std::function<WallTime()> now,
              std::function<void()> handedOn = {})
      : history_(history), next_(next), now_(std::move(now)), onHandedOn_(std::move(handedOn)) {}

#define EVENT(name, params, args)                                   \
  void name params override {                                       \
    if constexpr (concernsLinks(#name)) note(#name, firstTwo args); \
    next_.name args;                                                \
    if (onHandedOn_) onHandedOn_();                                 \
  }
#include "contract/sondrel_events.inc"
#undef EVENT

 private:
  static std::pair<Long, Long> firstTwo(Long only) { return {only, 0}; }
  template <class... Rest>
  static std::pair<Long, Long> firstTwo(Long first, Long second, const Rest&...) {
    return {first, second};
  }
  void note(const char* name, std::pair<Long, Long> values) {
    history_.note({now_(), name, values.first, values.second});
  }

  LinkHistory& history_;
  ReceiverListener& next_;
  std::function<WallTime()> now_;
  std::function<void()> onHandedOn_;
};

}  // namespace kelvane
