#pragma once

#include <string_view>

namespace kelvane::ambrel {

/// Reads four digits as two numbers of two digits ("3110"); false where they are something else.
inline bool twoNumbers(std::string_view text, int& first, int& second) {
  if (text.size() != 4) return false;
  for (const char c : text) {
    if (c < '0' || c > '9') return false;
  }
  first = (text[0] - '0') * 10 + text[1] - '0';
  second = (text[2] - '0') * 10 + text[3] - '0';
  return true;
}

}  // namespace kelvane::ambrel
