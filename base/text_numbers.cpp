#include "base/text_numbers.h"

#include <algorithm>
#include <bit>
#include <functional>
#include <limits>
#include <utility>

namespace kelvane {

namespace {

constexpr std::uint32_t kFree = std::numeric_limits<std::uint32_t>::max();

std::uint32_t hashOf(std::string_view text) {
  return static_cast<std::uint32_t>(std::hash<std::string_view>()(text));
}

}  // namespace

TextNumbers::TextNumbers(std::size_t expected) {
  texts_.reserve(expected);
  makeSlots(expected);
}

void TextNumbers::makeSlots(std::size_t texts) {
  constexpr std::size_t kFewest = 16;
  const std::vector<Slot> old = std::exchange(
      slots_, std::vector<Slot>(std::bit_ceil(std::max(texts + texts / 4, kFewest)), {0, kFree}));
  // They are all different, and need not be looked at for their places.
  for (const Slot& each : old) {
    if (each.number == kFree) continue;
    std::size_t at = each.hash;
    while (slotAt(at).number != kFree) ++at;
    slotAt(at) = each;
  }
}

/// The text's slot, or the free one that it gets.
TextNumbers::Slot& TextNumbers::slotOf(std::uint32_t hash, std::string_view text) {
  for (std::size_t at = hash;; ++at) {
    Slot& slot = slotAt(at);
    if (slot.number == kFree || (slot.hash == hash && texts_[slot.number] == text)) return slot;
  }
}

TextNumbers::Number TextNumbers::of(std::string_view text) {
  const std::uint32_t hash = hashOf(text);
  const Slot& there = slotOf(hash, text);
  if (there.number != kFree) return {there.number, false};
  const std::size_t number = texts_.size();
  if (number + 1 > slots_.size() / 5 * 4) makeSlots((number + 1) * 2);
  texts_.push_back(text);
  slotOf(hash, text) = {hash, static_cast<std::uint32_t>(number)};
  return {number, true};
}

}  // namespace kelvane
