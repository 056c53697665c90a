#include "grid/grid_sort.h"

#include <algorithm>
#include <array>
#include <bit>
#include <charconv>
#include <iterator>
#include <numeric>

#include "base/number.h"

namespace kelvane {

namespace {

std::uint64_t firstBytes(std::string_view text) {
  std::uint64_t bytes = 0;
  for (std::size_t i = 0; i < sizeof bytes; ++i)
    bytes = bytes << 8 | (i < text.size() ? static_cast<unsigned char>(text[i]) : 0);
  return bytes;
}

/// Bits that compare, as a whole number, as the doubles do.
std::uint64_t comparable(double number) {
  constexpr std::uint64_t kSign = std::uint64_t{1} << 63;
  // The sum makes one zero of the two.
  const auto bits = std::bit_cast<std::uint64_t>(number + 0.0);
  return bits & kSign ? ~bits : bits | kSign;
}

/// Sorts by eight bits of a value; keys that are alike in them stay in the order that they have.
template <class Key, class Value>
void sortByDigit(std::vector<Key>& keys, std::vector<Key>& room, Value Key::*value, int shift) {
  const auto digit = [=](const Key& key) { return key.*value >> shift & 0xFF; };
  std::array<std::size_t, 256> places{};
  for (const Key& key : keys) ++places[digit(key)];
  std::exclusive_scan(places.begin(), places.end(), places.begin(), std::size_t{0});
  room.resize(keys.size());
  for (const Key& key : keys) room[places[digit(key)]++] = key;
  keys.swap(room);
}

/// Sorts by a value, digit by digit from the last one on; those that all keys share are passed
/// over.
template <class Key, class Value>
void sortByDigits(std::vector<Key>& keys, std::vector<Key>& room, Value Key::*value) {
  Value differing = 0;
  for (const Key& key : keys) differing |= key.*value ^ keys.front().*value;
  for (int shift = 0; shift < static_cast<int>(8 * sizeof(Value)); shift += 8)
    if (differing >> shift & 0xFF) sortByDigit(keys, room, value, shift);
}

template <class Keys>
void takeRows(const Keys& keys, std::span<GridRow> order) {
  std::transform(keys.begin(), keys.end(), order.begin(), [](const auto& key) { return key.row; });
}

std::size_t commonStart(std::string_view a, std::string_view b) {
  return static_cast<std::size_t>(std::mismatch(a.begin(), a.end(), b.begin(), b.end()).first -
                                  a.begin());
}

}  // namespace

void NumberKeys::add(GridRow row, std::string_view cell) {
  keys_.push_back({comparable(num(cell)), row});
}

void NumberKeys::sortInto(std::span<GridRow> order) {
  std::vector<Key> room;
  // Equal numbers then keep the order of their rows.
  if (!std::ranges::is_sorted(keys_, {}, &Key::row)) sortByDigits(keys_, room, &Key::row);
  if (!std::ranges::is_sorted(keys_, {}, &Key::number)) sortByDigits(keys_, room, &Key::number);
  takeRows(keys_, order);
}

void TextKeys::add(GridRow row, std::string_view cell, std::string_view joined) {
  std::array<char, 10> number;
  char* const end = std::to_chars(number.begin(), number.end(), row).ptr;
  const std::size_t at = texts_.size();
  texts_.append(cell).append(joined).append(number.data(), end);
  keys_.push_back({0, 0, at, static_cast<std::uint32_t>(texts_.size() - at), row});
}

/// A column often begins alike in all rows, or is alike but for the rows' numbers: only what comes
/// after that is compared, and most of the time its first bytes, which stand in the key, decide.
void TextKeys::dropCommonStart() {
  const std::string_view texts = texts_;
  std::size_t common = keys_.empty() ? 0 : keys_.front().length;
  for (const Key& key : keys_)
    common = commonStart(texts.substr(keys_.front().at, common), texts.substr(key.at, key.length));
  for (Key& key : keys_) {
    key.at += common;
    key.length -= static_cast<std::uint32_t>(common);
    const std::string_view text = texts.substr(key.at, key.length);
    key.first = firstBytes(text);
    key.second = firstBytes(text.substr(std::min(text.size(), sizeof key.first)));
  }
}

/// No two keys are equal, so the order does not depend on how it is found. The library's sort keeps
/// to n log n and to a shallow stack for every input. The check before it is for the column that is
/// sorted already, which is what a second click on its header finds.
void TextKeys::sortInto(std::span<GridRow> order) {
  dropCommonStart();
  const std::string_view texts = texts_;
  const auto before = [texts](const Key& a, const Key& b) {
    if (a.first != b.first) return a.first < b.first;
    if (a.second != b.second) return a.second < b.second;
    const int compared = texts.substr(a.at, a.length).compare(texts.substr(b.at, b.length));
    return compared != 0 ? compared < 0 : a.row < b.row;
  };
  if (!std::ranges::is_sorted(keys_, before)) std::ranges::sort(keys_, before);
  takeRows(keys_, order);
}

}  // namespace kelvane
