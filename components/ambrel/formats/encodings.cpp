#include <array>
#include <cstdint>
#include <string>
#include <string_view>

#include "base/encoding.h"
#include "base/utf8.h"
#include "components/ambrel/formats/list_format.h"

namespace kelvane::formats {

namespace {

std::string fromUtf16(std::string_view bytes, bool lowFirst) {
  std::string text;
  text.reserve(bytes.size());
  const auto unit = [&](std::size_t at) {
    const auto first = static_cast<unsigned char>(bytes[at]),
               second = static_cast<unsigned char>(bytes[at + 1]);
    return static_cast<std::uint32_t>(lowFirst ? first | second << 8 : second | first << 8);
  };
  for (std::size_t at = 0; at + 1 < bytes.size(); at += 2) {
    std::uint32_t code = unit(at);
    if (code >= 0xD800 && code < 0xE000) {
      const std::uint32_t low = at + 3 < bytes.size() ? unit(at + 2) : 0;
      const bool pair = code < 0xDC00 && low >= 0xDC00 && low < 0xE000;
      code = pair ? 0x10000 + ((code - 0xD800) << 10) + (low - 0xDC00) : 0xFFFD;
      if (pair) at += 2;
    }
    appendCharacter(text, code);
  }
  return text;
}

/// Latin-1 as Windows writes it, with letters and signs where Latin-1 itself has controls, which
/// nobody writes into a list.
std::string fromWindowsLatin(std::string_view bytes) {
  constexpr std::array<char16_t, 32> kSigns = {
      0x20AC, 0x0081, 0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021, 0x02C6, 0x2030, 0x0160,
      0x2039, 0x0152, 0x008D, 0x017D, 0x008F, 0x0090, 0x2018, 0x2019, 0x201C, 0x201D, 0x2022,
      0x2013, 0x2014, 0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0x009D, 0x017E, 0x0178};
  std::string text;
  text.reserve(bytes.size() + bytes.size() / 8);
  for (const char c : bytes) {
    const auto byte = static_cast<unsigned char>(c);
    appendCharacter(text, byte >= 0x80 && byte < 0xA0 ? kSigns[byte - 0x80u] : byte);
  }
  return text;
}

/// Without a mark: where every second byte of the beginning is 0 it is UTF-16 in ASCII letters.
int zerosAt(std::string_view bytes, std::size_t odd) {
  int zeros = 0;
  for (std::size_t at = odd; at < bytes.size() && at < 64; at += 2) zeros += bytes[at] == '\0';
  return zeros;
}

/// "\r\n" and "\r" alone become "\n".
void plainLineEnds(std::string& text) {
  if (text.find('\r') == text.npos) return;
  std::size_t to = 0;
  for (std::size_t at = 0; at < text.size(); ++at) {
    if (text[at] != '\r')
      text[to++] = text[at];
    else if (at + 1 == text.size() || text[at + 1] != '\n')
      text[to++] = '\n';
  }
  text.resize(to);
}

std::string decoded(std::string_view bytes) {
  if (bytes.starts_with(kUtf8Mark))
    bytes.remove_prefix(kUtf8Mark.size());
  else if (bytes.starts_with("\xFF\xFE"))
    return fromUtf16(bytes.substr(2), true);
  else if (bytes.starts_with("\xFE\xFF"))
    return fromUtf16(bytes.substr(2), false);
  else if (bytes.size() >= 8 && zerosAt(bytes, 1) > 3 && zerosAt(bytes, 0) == 0)
    return fromUtf16(bytes, true);
  else if (bytes.size() >= 8 && zerosAt(bytes, 0) > 3 && zerosAt(bytes, 1) == 0)
    return fromUtf16(bytes, false);
  return isUtf8(bytes) ? std::string(bytes) : fromWindowsLatin(bytes);
}

}  // namespace

std::string asUtf8(std::string_view bytes) {
  std::string text = decoded(bytes);
  plainLineEnds(text);
  return text;
}

}  // namespace kelvane::formats
