#pragma once

#include <cstdint>
#include <deque>
#include <functional>
#include <memory>
#include <vector>

#include "contract/components.h"

namespace kelvane::sondrel {

/// Events on their way to listeners. Each listener hears every event that was raised while it
/// listened, in the order of raising, whatever other listeners do in their handlers: they may call
/// back, remove themselves or others, and deliver again from a message loop of their own.
class EventQueue {
 public:
  using Raise = std::function<void(ReceiverListener&)>;

  /// `wake` asks for deliver() soon; it is called once for each batch and must not deliver itself.
  explicit EventQueue(std::function<void()> wake);

  void add(ReceiverListener& listener);
  /// Nothing more is delivered to it, what waits for it included.
  void remove(ReceiverListener& listener);
  /// With a `series` other than 0, an event of the same series that still waits is left out: only
  /// the newest reading of a meter is worth hearing, however long nobody listened.
  void raise(bool global, Raise event, std::uint32_t series = 0);
  /// Delivers what was raised before the call; what its handlers raise waits for the next one.
  /// Inside a handler it goes on with the next event, down to a bounded depth; below that it
  /// returns, and the calls further up deliver the rest.
  void deliver();
  /// Whether the event that is being delivered was caused at a receiver itself.
  bool global() const { return global_; }

 private:
  struct Event {
    std::uint64_t number;
    bool global;
    std::uint32_t series;
    Raise raise;
  };
  struct Recipient {
    ReceiverListener* listener;
    std::deque<std::shared_ptr<const Event>> waiting;
  };

  std::shared_ptr<Recipient> next(std::uint64_t last) const;
  void deliverTo(Recipient& recipient);
  bool waiting() const;
  void wakeOnce();

  std::function<void()> wake_;
  std::vector<std::shared_ptr<Recipient>> recipients_;
  std::uint64_t raised_ = 0;
  int depth_ = 0;
  bool woken_ = false;
  bool global_ = false;
};

}  // namespace kelvane::sondrel
