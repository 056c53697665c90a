#include "base/utf8.h"

#include <algorithm>

namespace kelvane {

std::size_t utf8SequenceLength(std::string_view text) {
  const auto at = [text](std::size_t i) { return static_cast<unsigned char>(text[i]); };
  if (at(0) < 0x80) return 1;
  const std::size_t length = at(0) >= 0xF0 ? 4 : at(0) >= 0xE0 ? 3 : 2;
  if (at(0) < 0xC2 || at(0) > 0xF4 || text.size() < length) return 0;
  for (std::size_t i = 1; i < length; ++i) {
    if ((at(i) & 0xC0) != 0x80) return 0;
  }
  const bool overlong = (at(0) == 0xE0 && at(1) < 0xA0) || (at(0) == 0xF0 && at(1) < 0x90);
  const bool surrogate = at(0) == 0xED && at(1) >= 0xA0;
  const bool beyond = at(0) == 0xF4 && at(1) >= 0x90;
  return overlong || surrogate || beyond ? 0 : length;
}

void appendCharacter(std::string& text, char32_t character) {
  if (character > 0x10FFFF || (character >= 0xD800 && character <= 0xDFFF)) return;
  const auto add = [&text](char32_t byte) { text += static_cast<char>(byte); };
  const auto follow = [&](int shift) { add(0x80 | ((character >> shift) & 0x3F)); };
  if (character < 0x80) return add(character);
  if (character < 0x800) {
    add(0xC0 | (character >> 6));
    return follow(0);
  }
  if (character < 0x10000) {
    add(0xE0 | (character >> 12));
    follow(6);
    return follow(0);
  }
  add(0xF0 | (character >> 18));
  follow(12);
  follow(6);
  follow(0);
}

void dropLastCharacter(std::string& text) {
  while (!text.empty()) {
    const bool follows = (static_cast<unsigned char>(text.back()) & 0xC0) == 0x80;
    text.pop_back();
    if (!follows) return;
  }
}

std::u32string characters(std::string_view text) {
  std::u32string result;
  while (!text.empty()) {
    const std::size_t length = utf8SequenceLength(text);
    char32_t character = static_cast<unsigned char>(text[0]);
    if (length == 0) character = 0xFFFD;
    if (length > 1) character &= 0x7Fu >> length;
    for (std::size_t i = 1; i < length; ++i)
      character = character << 6 | (static_cast<unsigned char>(text[i]) & 0x3F);
    result += character;
    text.remove_prefix(std::max<std::size_t>(length, 1));
  }
  return result;
}

}  // namespace kelvane
