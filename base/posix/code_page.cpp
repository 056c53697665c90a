#include "base/code_page.h"

#include <algorithm>
#include <array>
#include <string>
#include <string_view>

#include "base/encoding.h"
#include "base/utf8.h"

namespace kelvane {

namespace {

// Here the code page is always Windows-1252: Latin-1, but for these in the place of its controls.
constexpr std::array<char32_t, 32> kMarks{
    0x20AC, 0x81,   0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021, 0x02C6, 0x2030, 0x0160,
    0x2039, 0x0152, 0x8D,   0x017D, 0x8F,   0x90,   0x2018, 0x2019, 0x201C, 0x201D, 0x2022,
    0x2013, 0x2014, 0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0x9D,   0x017E, 0x0178};

char byteOf(char32_t character) {
  const auto mark = std::find(kMarks.begin(), kMarks.end(), character);
  if (mark != kMarks.end()) return static_cast<char>(0x80 + (mark - kMarks.begin()));
  const bool latin1 = character < 0x80 || (character >= 0xA0 && character <= 0xFF);
  return latin1 ? static_cast<char>(character) : '?';
}

}  // namespace

std::string toCodePage(std::string_view utf8) {
  // ASCII alone is the same in every code page, and most texts are.
  if (isAscii(utf8)) return std::string(utf8);
  std::string bytes;
  for (const char32_t character : characters(utf8)) bytes += byteOf(character);
  return bytes;
}

std::string fromCodePage(std::string_view bytes) {
  if (isAscii(bytes)) return std::string(bytes);
  std::string text;
  for (const char c : bytes) {
    const auto byte = static_cast<unsigned char>(c);
    appendCharacter(text, byte >= 0x80 && byte < 0xA0 ? kMarks[byte - 0x80] : byte);
  }
  return text;
}

}  // namespace kelvane
