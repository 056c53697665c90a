#include "components/sondrel/sharing/shared_receiver.h"

#include <algorithm>
#include <utility>

namespace kelvane::sondrel {

namespace {

void lay(const ShareOrder& order, SharedFacts& facts) {
  switch (order.item) {
    case Item::Frequency:
      facts.frequency = order.value;
      break;
    case Item::Mode:
      facts.mode = order.value;
      if (order.filter != 0) facts.filter = order.filter;
      break;
    case Item::Filter:
      facts.filter = order.value;
      break;
    case Item::Agc:
      facts.agc = order.value;
      break;
    case Item::Blanker:
      facts.blanker = order.value;
      break;
    case Item::Attenuator:
      facts.attenuator = order.value;
      break;
    default:
      break;
  }
}

}  // namespace

SharedFacts SharedReceiver::facts() const {
  const std::lock_guard lock(mutex_);
  SharedFacts facts = facts_;
  for (const Waiting& waiting : orders_) lay(waiting.order, facts);
  return facts;
}

bool SharedReceiver::order(ShareOrder order) {
  const std::lock_guard lock(mutex_);
  const auto waits = [](const Waiting& waiting) { return !waiting.taken; };
  const bool told = std::ranges::any_of(orders_, waits);
  // To the end: a filter that was set for the former mode must not come after a newer mode.
  std::erase_if(orders_, [&](const Waiting& w) { return waits(w) && w.order.item == order.item; });
  orders_.push_back({std::move(order)});
  return !told;
}

std::vector<ShareOrder> SharedReceiver::takeOrders() {
  const std::lock_guard lock(mutex_);
  std::vector<ShareOrder> taken;
  for (Waiting& waiting : orders_) {
    if (!std::exchange(waiting.taken, true)) taken.push_back(waiting.order);
  }
  return taken;
}

void SharedReceiver::publish(SharedFacts facts) {
  const std::lock_guard lock(mutex_);
  std::erase_if(orders_, [](const Waiting& waiting) { return waiting.taken; });
  facts_ = std::move(facts);
}

}  // namespace kelvane::sondrel
