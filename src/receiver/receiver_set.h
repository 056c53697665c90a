#pragma once

#include <array>
#include <utility>
#include <vector>

#include "contract/components.h"

namespace kelvane {

/// How many receivers the component serves: 0 to 8, whatever it answers.
Count receiverCount(ReceiverComponent& component);

/// Where each receiver of a former set is in the present one.
class ReceiverMoves {
 public:
  /// Nothing has moved.
  ReceiverMoves();

  /// The present place of the receiver that was at `former`; -1 where it is gone, and for a place
  /// where there was none.
  Index operator()(Index former) const;
  /// Takes values that are kept by place along with their receivers; `fresh` for those that came.
  template <class Value>
  void carry(std::array<Value, kMostReceivers>& values, const Value& fresh) const {
    std::array<Value, kMostReceivers> carried;
    carried.fill(fresh);
    for (Index former = 0; former < kMostReceivers; ++former) {
      if (newIndex_[former] >= 0) carried[newIndex_[former]] = std::move(values[former]);
    }
    values = std::move(carried);
  }

 private:
  friend class ReceiverSet;
  std::array<Index, kMostReceivers> newIndex_;
};

/// The receivers that the component serves, each by what it is known by: its `GetRxId`, else its
/// name, else its place.
class ReceiverSet {
 public:
  explicit ReceiverSet(ReceiverComponent& component);

  /// The set of receivers has changed: takes the new one, and answers where those of before went.
  ReceiverMoves renew();

 private:
  ReceiverComponent& component_;
  std::vector<Text> known_;
};

}  // namespace kelvane
