#include "base/number.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <limits>

#include "base/text.h"

namespace kelvane {

namespace {

/// A double holds every whole number of so many digits.
constexpr std::size_t kExactDigits = 15;

}  // namespace

double num(std::string_view text) {
  text = text.substr(std::min(text.find_first_not_of(" \t"), text.size()));
  const bool negative = !text.empty() && text.front() == '-';
  if (!text.empty() && (text.front() == '-' || text.front() == '+')) text.remove_prefix(1);
  std::size_t length = 0;
  bool point = false;
  while (length < text.size() && (isDigit(text[length]) || (text[length] == '.' && !point))) {
    point = point || text[length] == '.';
    ++length;
  }
  double value = 0;
  if (!point && length <= kExactDigits) {
    // Most numbers are whole: many times as fast, and as exact.
    std::uint64_t whole = 0;
    std::from_chars(text.data(), text.data() + length, whole);
    value = static_cast<double>(whole);
  } else {
    std::from_chars(text.data(), text.data() + length, value, std::chars_format::fixed);
  }
  return negative ? -value : value;
}

std::optional<std::int64_t> wholeNumber(std::string_view text) {
  text = trimmed(text);
  if (text.size() > 1 && text.front() == '+' && isDigit(text[1])) text.remove_prefix(1);
  std::int64_t value = 0;
  const char* end = text.data() + text.size();
  const auto [stop, error] = std::from_chars(text.data(), end, value);
  if (error != std::errc() || stop != end) return std::nullopt;
  return value;
}

std::string twoDigits(int number) {
  return {static_cast<char>('0' + number / 10), static_cast<char>('0' + number % 10)};
}

std::string decimalText(double value) {
  std::array<char, 400> buffer;
  const auto [end, error] =
      std::to_chars(buffer.data(), buffer.data() + buffer.size(), value, std::chars_format::fixed);
  return error == std::errc() ? std::string(buffer.data(), end) : std::string("0");
}

std::int32_t nearestLong(double value) {
  using Limits = std::numeric_limits<std::int32_t>;
  if (std::isnan(value)) return 0;
  if (value >= Limits::max()) return Limits::max();
  if (value <= Limits::min()) return Limits::min();
  return static_cast<std::int32_t>(std::lround(value));
}

}  // namespace kelvane
