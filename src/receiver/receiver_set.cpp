#include "receiver/receiver_set.h"

#include <algorithm>
#include <string>
#include <utility>

namespace kelvane {

namespace {

/// The first letter keeps an id, a name and a place apart that read alike.
Text knownBy(ReceiverComponent& component, Index rx) {
  if (const Answer<Text> id = component.GetRxId(rx); !id.value().empty()) return "i" + id.value();
  if (const Answer<Text> name = component.GetRxName(rx); !name.value().empty())
    return "n" + name.value();
  return "p" + std::to_string(rx);
}

std::vector<Text> receiversOf(ReceiverComponent& component) {
  std::vector<Text> known;
  const Count receivers = receiverCount(component);
  for (Index rx = 0; rx < receivers; ++rx) {
    const Text id = knownBy(component, rx);
    Text unique = id;
    // Of several that are called alike the first stays the first, the second the second.
    for (int i = 2; std::ranges::find(known, unique) != known.end(); ++i)
      unique = id + '\n' + std::to_string(i);
    known.push_back(std::move(unique));
  }
  return known;
}

}  // namespace

Count receiverCount(ReceiverComponent& component) {
  return std::clamp<Count>(component.GetRxCount(), 0, kMostReceivers);
}

ReceiverMoves::ReceiverMoves() {
  for (Index rx = 0; rx < kMostReceivers; ++rx) newIndex_[rx] = rx;
}

Index ReceiverMoves::operator()(Index former) const {
  return former >= 0 && former < kMostReceivers ? newIndex_[former] : Index{-1};
}

ReceiverSet::ReceiverSet(ReceiverComponent& component)
    : component_(component), known_(receiversOf(component)) {}

ReceiverMoves ReceiverSet::renew() {
  const std::vector<Text> former = std::exchange(known_, receiversOf(component_));
  ReceiverMoves moves;
  moves.newIndex_.fill(-1);
  for (std::size_t i = 0; i < former.size(); ++i) {
    const auto now = std::ranges::find(known_, former[i]);
    if (now != known_.end()) moves.newIndex_[i] = static_cast<Index>(now - known_.begin());
  }
  return moves;
}

}  // namespace kelvane
