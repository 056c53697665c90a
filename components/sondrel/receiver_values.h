#pragma once

#include <array>
#include <optional>

#include "components/sondrel/items.h"

namespace kelvane::sondrel {

/// What is known of each item of one receiver: what the radio confirmed, what was last reported to
/// listeners, and the newest request that still waits for the radio's answer.
class ReceiverValues {
 public:
  struct Pending {
    std::int32_t value = 0;
    std::uint32_t ticket = 0;
  };

  ReceiverValues();

  /// The newest accepted request's value until the radio answers it; else what was confirmed.
  std::int32_t newest(Item item) const;
  std::int32_t confirmed(Item item) const { return slot(item).confirmed; }
  bool pending(Item item) const { return slot(item).pending.has_value(); }
  /// The waiting request's ticket; 0 where none waits.
  std::uint32_t ticket(Item item) const { return pending(item) ? slot(item).pending->ticket : 0; }

  /// A request takes the place of one that waits for the same item.
  void await(Item item, const Pending& request) { slot(item).pending = request; }
  /// The request of that ticket waits no longer; false when a newer one has its place.
  bool answer(Item item, std::uint32_t ticket);
  void forget(Item item) { slot(item).pending.reset(); }

  /// Keeps what the radio says; answers whether that is news since the last value that counts.
  bool confirm(Item item, std::int32_t value);
  /// Keeps a value that does not count yet.
  void confirmPassing(Item item, std::int32_t value) { slot(item).confirmed = value; }
  /// The confirmed value counts from now on; answers whether that is news.
  bool count(Item item) { return confirm(item, confirmed(item)); }
  /// Whether listeners know another value than the confirmed one; asking counts as telling them.
  bool takeUnreported(Item item);

 private:
  struct Slot {
    std::int32_t confirmed = 0;
    std::int32_t counted = 0;
    std::int32_t reported = 0;
    std::optional<Pending> pending;
  };
  Slot& slot(Item item) { return slots_[static_cast<std::size_t>(item)]; }
  const Slot& slot(Item item) const { return slots_[static_cast<std::size_t>(item)]; }

  std::array<Slot, kItemCount> slots_;
};

}  // namespace kelvane::sondrel
