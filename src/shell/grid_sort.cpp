#include "shell/grid_sort.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <iterator>

#include "base/number.h"

namespace kelvane {

namespace {

std::uint64_t firstBytes(std::string_view text) {
  std::uint64_t bytes = 0;
  for (std::size_t i = 0; i < sizeof bytes; ++i)
    bytes = bytes << 8 | (i < text.size() ? static_cast<unsigned char>(text[i]) : 0);
  return bytes;
}

std::size_t commonStart(std::string_view a, std::string_view b) {
  return static_cast<std::size_t>(std::mismatch(a.begin(), a.end(), b.begin(), b.end()).first -
                                  a.begin());
}

/// No two keys are equal, so the order does not depend on how it is found. The library's sort keeps
/// to n log n and to a shallow stack for every input. The check before it is for the column that is
/// sorted already, which is what a second click on its header finds.
template <class Keys, class Before>
void sortKeys(Keys& keys, std::span<GridRow> order, Before before) {
  if (!std::is_sorted(keys.begin(), keys.end(), before))
    std::sort(keys.begin(), keys.end(), before);
  std::transform(keys.begin(), keys.end(), order.begin(), [](const auto& key) { return key.row; });
}

}  // namespace

void NumberKeys::add(GridRow row, std::string_view cell) { keys_.push_back({num(cell), row}); }

void NumberKeys::sortInto(std::span<GridRow> order) {
  sortKeys(keys_, order, [](const Key& a, const Key& b) {
    return a.number != b.number ? a.number < b.number : a.row < b.row;
  });
}

void TextKeys::add(GridRow row, std::string_view cell, std::string_view joined) {
  std::array<char, 10> number;
  char* const end = std::to_chars(number.begin(), number.end(), row).ptr;
  const std::size_t at = texts_.size();
  texts_.append(cell).append(joined).append(number.data(), end);
  keys_.push_back({0, at, texts_.size() - at, row});
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
    key.length -= common;
    key.first = firstBytes(texts.substr(key.at, key.length));
  }
}

void TextKeys::sortInto(std::span<GridRow> order) {
  dropCommonStart();
  const std::string_view texts = texts_;
  sortKeys(keys_, order, [texts](const Key& a, const Key& b) {
    if (a.first != b.first) return a.first < b.first;
    const int compared = texts.substr(a.at, a.length).compare(texts.substr(b.at, b.length));
    return compared != 0 ? compared < 0 : a.row < b.row;
  });
}

}  // namespace kelvane
