#include "base/text.h"

#include <algorithm>

namespace kelvane {

namespace {

/// Length of the well-formed UTF-8 sequence that the text begins with; 0 where there is none.
std::size_t sequenceLength(std::string_view text) {
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

}  // namespace

std::string_view trimmed(std::string_view text) {
  constexpr std::string_view blanks = " \t\r\n\f\v";
  const auto first = text.find_first_not_of(blanks);
  if (first == std::string_view::npos) return {};
  return text.substr(first, text.find_last_not_of(blanks) - first + 1);
}

std::vector<std::string_view> split(std::string_view text, char separator) {
  std::vector<std::string_view> parts;
  for (;;) {
    const auto end = text.find(separator);
    parts.push_back(text.substr(0, end));
    if (end == std::string_view::npos) return parts;
    text.remove_prefix(end + 1);
  }
}

std::string upper(std::string_view text) {
  std::string result(text);
  for (char& c : result) {
    if (c >= 'a' && c <= 'z') c = static_cast<char>(c - 'a' + 'A');
  }
  return result;
}

std::string validUtf8(std::string_view text, char replacement) {
  std::string result;
  while (!text.empty()) {
    const std::size_t length = sequenceLength(text);
    if (length == 0) {
      result += replacement;
    } else {
      result += text.substr(0, length);
    }
    text.remove_prefix(std::max<std::size_t>(length, 1));
  }
  return result;
}

std::size_t characterCount(std::string_view text) {
  const auto starts = [](unsigned char byte) { return (byte & 0xC0) != 0x80; };
  return static_cast<std::size_t>(std::count_if(text.begin(), text.end(), starts));
}

bool equalIgnoringCase(std::string_view a, std::string_view b) {
  return a.size() == b.size() && upper(a) == upper(b);
}

}  // namespace kelvane
