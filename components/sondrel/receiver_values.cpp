#include "components/sondrel/receiver_values.h"

namespace kelvane::sondrel {

ReceiverValues::ReceiverValues() {
  for (std::size_t i = 0; i < kItemCount; ++i) {
    slots_[i].confirmed = slots_[i].counted = slots_[i].reported =
        unknownValue(static_cast<Item>(i));
  }
}

std::int32_t ReceiverValues::newest(Item item) const {
  const Slot& s = slot(item);
  return s.pending ? s.pending->value : s.confirmed;
}

bool ReceiverValues::answer(Item item, std::uint32_t ticket) {
  std::optional<Pending>& pending = slot(item).pending;
  if (!pending || pending->ticket != ticket) return false;
  pending.reset();
  return true;
}

bool ReceiverValues::confirm(Item item, std::int32_t value) {
  Slot& s = slot(item);
  const bool news = s.counted != value;
  s.confirmed = s.counted = value;
  return news;
}

bool ReceiverValues::takeUnreported(Item item) {
  Slot& s = slot(item);
  const bool unreported = s.reported != s.confirmed;
  s.reported = s.confirmed;
  return unreported;
}

}  // namespace kelvane::sondrel
