#include "base/encoding.h"

#include <cstdint>
#include <cstring>

#include "base/utf8.h"

namespace kelvane {

namespace {

/// Whether words of eight bytes hold something else than ASCII.
bool holdsOther(const char* bytes, std::size_t words) {
  std::uint64_t all = 0;
  for (std::size_t word = 0; word < words; ++word) {
    std::uint64_t eight = 0;
    std::memcpy(&eight, bytes + word * sizeof eight, sizeof eight);
    all |= eight;
  }
  return (all & 0x8080808080808080u) != 0;
}

/// How many bytes of ASCII a text begins with; most texts have little else.
std::size_t asciiLength(std::string_view bytes) {
  std::size_t length = 0;
  while (length + 64 <= bytes.size() && !holdsOther(bytes.data() + length, 8)) length += 64;
  while (length + 8 <= bytes.size() && !holdsOther(bytes.data() + length, 1)) length += 8;
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
