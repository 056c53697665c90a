#include "base/instance_name.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <utility>

#include "base/text.h"

namespace kelvane {

namespace {

// A key's name may have 255 UTF-16 units, of which a character takes at most two.
constexpr std::size_t kLongestKey = 120;
// A file's name stands in a path that as a whole has few more than that.
constexpr std::size_t kLongestFile = 100;
constexpr std::size_t kNumberLength = 17;

std::uint64_t fnv1a(std::string_view text) {
  std::uint64_t hash = 0xcbf29ce484222325;
  for (const unsigned char byte : text) hash = (hash ^ byte) * 0x100000001b3;
  return hash;
}

std::string numberOf(std::string_view text) {
  std::string number = "~";
  const std::uint64_t hash = fnv1a(text);
  for (int shift = 60; shift >= 0; shift -= 4) number += "0123456789abcdef"[hash >> shift & 15];
  return number;
}

/// The first characters of a UTF-8 text, none of them torn.
std::string_view firstCharacters(std::string_view text, std::size_t count) {
  std::size_t end = 0;
  for (; end < text.size(); ++end) {
    const bool startsCharacter = characterCount(text.substr(end, 1)) == 1;
    if (startsCharacter && count-- == 0) break;
  }
  return text.substr(0, end);
}

std::string shortened(std::string text, std::string_view whole, std::size_t longest) {
  if (characterCount(text) <= longest) return text;
  return std::string(firstCharacters(text, longest - kNumberLength)) + numberOf(whole);
}

bool isDevice(std::string_view name) {
  name = trimmed(name.substr(0, name.find('.')));
  constexpr std::array<std::string_view, 4> plain{"CON", "PRN", "AUX", "NUL"};
  const std::string upperName = upper(name);
  if (std::find(plain.begin(), plain.end(), upperName) != plain.end()) return true;
  const std::string_view stem = std::string_view(upperName).substr(0, 3);
  return upperName.size() == 4 && (stem == "COM" || stem == "LPT") && upperName[3] >= '0' &&
         upperName[3] <= '9';
}

bool isForbidden(char c) {
  return static_cast<unsigned char>(c) < 32 ||
         std::string_view("<>:\"/\\|?*").find(c) != std::string_view::npos;
}

}  // namespace

std::string safeInstanceName(std::string_view instance) {
  if (instance.empty()) return std::string(kDefaultInstance);
  std::string name(instance);
  std::replace(name.begin(), name.end(), '\\', '_');
  return shortened(std::move(name), instance, kLongestKey);
}

std::string safeFileName(std::string_view text) {
  std::string name(text);
  std::replace_if(name.begin(), name.end(), isForbidden, '_');
  name = shortened(std::move(name), text, kLongestFile);
  // Dots and blanks at the end would be dropped without a word when the file is made.
  const std::size_t kept = name.find_last_not_of(". ") + 1;
  std::fill(name.begin() + static_cast<std::ptrdiff_t>(kept), name.end(), '_');
  if (name.empty() || isDevice(name)) name.insert(0, "_");
  return name;
}

}  // namespace kelvane
