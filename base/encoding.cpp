#include "base/encoding.h"

#include <cstdint>
#include <cstring>

#include "base/utf8.h"

namespace kelvane {

namespace {

/// How many bytes of ASCII a text begins with; most texts have little else.
std::size_t asciiLength(std::string_view bytes) {
  std::size_t length = 0;
  for (std::uint64_t eight = 0; length + 8 <= bytes.size(); length += 8) {
    std::memcpy(&eight, bytes.data() + length, sizeof eight);
    if ((eight & 0x8080808080808080u) != 0) break;
  }
  while (length < bytes.size() && (bytes[length] & 0x80) == 0) ++length;
  return length;
}

}  // namespace

bool isAscii(std::string_view bytes) { return asciiLength(bytes) == bytes.size(); }

bool isUtf8(std::string_view bytes) {
  for (;;) {
    bytes.remove_prefix(asciiLength(bytes));
    if (bytes.empty()) return true;
    const std::size_t length = utf8SequenceLength(bytes);
    if (length == 0) return false;
    bytes.remove_prefix(length);
  }
}

std::string utf8FromLatin1(std::string_view bytes) {
  std::string result;
  result.reserve(bytes.size());
  for (const char c : bytes) appendCharacter(result, static_cast<std::uint8_t>(c));
  return result;
}

}  // namespace kelvane
