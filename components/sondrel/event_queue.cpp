#include "components/sondrel/event_queue.h"

#include <algorithm>
#include <utility>

namespace kelvane::sondrel {

namespace {

/// Message loops inside handlers inside message loops: deeper than any dialog goes.
constexpr int kDeepest = 16;

/// Gives a variable its former value back, also when a handler throws.
template <class T>
class Restored {
 public:
  Restored(T& variable, T value) : variable_(variable), former_(variable) { variable = value; }
  ~Restored() { variable_ = former_; }
  Restored(const Restored&) = delete;
  Restored& operator=(const Restored&) = delete;

 private:
  T& variable_;
  T former_;
};

}  // namespace

EventQueue::EventQueue(std::function<void()> wake) : wake_(std::move(wake)) {}

void EventQueue::add(ReceiverListener& listener) {
  recipients_.push_back(std::make_shared<Recipient>(Recipient{&listener, {}}));
}

void EventQueue::remove(ReceiverListener& listener) {
  std::erase_if(recipients_,
                [&](const auto& recipient) { return recipient->listener == &listener; });
}

void EventQueue::raise(bool global, Raise event, std::uint32_t series) {
  if (recipients_.empty()) return;
  const auto shared =
      std::make_shared<const Event>(Event{++raised_, global, series, std::move(event)});
  for (const auto& recipient : recipients_) {
    if (series != 0) {
      std::erase_if(recipient->waiting, [series](const auto& e) { return e->series == series; });
    }
    recipient->waiting.push_back(shared);
  }
  wakeOnce();
}

void EventQueue::deliver() {
  if (depth_ >= kDeepest) return;
  woken_ = false;
  const std::uint64_t last = raised_;
  const Restored deeper(depth_, depth_ + 1);
  try {
    while (const auto recipient = next(last)) deliverTo(*recipient);
  } catch (...) {
    // What the handler left behind is delivered by the next call, which somebody has to ask for.
    if (waiting()) wakeOnce();
    throw;
  }
}

std::shared_ptr<EventQueue::Recipient> EventQueue::next(std::uint64_t last) const {
  std::shared_ptr<Recipient> earliest;
  for (const auto& recipient : recipients_) {
    if (recipient->waiting.empty() || recipient->waiting.front()->number > last) continue;
    if (!earliest || recipient->waiting.front()->number < earliest->waiting.front()->number) {
      earliest = recipient;
    }
  }
  return earliest;
}

void EventQueue::deliverTo(Recipient& recipient) {
  const std::shared_ptr<const Event> event = recipient.waiting.front();
  recipient.waiting.pop_front();
  const Restored flag(global_, event->global);
  event->raise(*recipient.listener);
}

bool EventQueue::waiting() const {
  return std::ranges::any_of(recipients_,
                             [](const auto& recipient) { return !recipient->waiting.empty(); });
}

void EventQueue::wakeOnce() {
  if (woken_) return;
  woken_ = true;
  wake_();
}

}  // namespace kelvane::sondrel
