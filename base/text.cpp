#include "base/text.h"

#include <algorithm>

#include "base/utf8.h"

namespace kelvane {

std::string_view trimmed(std::string_view text) {
  const auto isBlank = [](char c) { return c == ' ' || (c >= '\t' && c <= '\r'); };
  while (!text.empty() && isBlank(text.front())) text.remove_prefix(1);
  while (!text.empty() && isBlank(text.back())) text.remove_suffix(1);
  return text;
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
  for (char& c : result) c = static_cast<char>(upperLetter(c));
  return result;
}

std::string lower(std::string_view text) {
  std::string result(text);
  for (char& c : result) c = static_cast<char>(lowerLetter(c));
  return result;
}

bool holdsUpper(std::string_view text, std::string_view upperText) {
  const auto equal = [](char c, char wanted) { return upperLetter(c) == wanted; };
  return !std::ranges::search(text, upperText, equal).empty();
}

std::string validUtf8(std::string_view text, char replacement) {
  std::string result;
  while (!text.empty()) {
    const std::size_t length = utf8SequenceLength(text);
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

std::string spokenCaption(std::string_view caption) {
  std::string spoken;
  for (std::size_t i = 0; i < caption.size(); ++i) {
    if (caption[i] == '&' && i + 1 < caption.size()) ++i;
    spoken += caption[i];
  }
  if (spoken.ends_with(':')) spoken.pop_back();
  return spoken;
}

bool equalIgnoringCase(std::string_view a, std::string_view b) {
  return std::ranges::equal(a, b, {}, upperLetter, upperLetter);
}

}  // namespace kelvane
