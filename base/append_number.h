#pragma once

#include <charconv>
#include <cstdint>
#include <string>

namespace kelvane {

/// Appends a whole number in decimal, as std::to_string writes it, without a text in between.
inline void appendNumber(std::string& text, std::int64_t number) {
  char digits[20];
  text.append(digits, std::to_chars(digits, digits + sizeof digits, number).ptr);
}

}  // namespace kelvane
