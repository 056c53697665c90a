#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace kelvane {

/// The value of a text read from its start as a decimal number: leading blanks skipped, the longest
/// prefix that forms a number taken, "." as the decimal point whatever the system's language; 0
/// where there is none. Exponents, hexadecimal and names of infinities are not numbers.
double num(std::string_view text);

/// The text as one whole number with nothing else but blanks around it; none where it is anything
/// else or does not fit.
std::optional<std::int64_t> wholeNumber(std::string_view text);

/// A number from 0 to 99 as two digits, as times and years are written.
std::string twoDigits(int number);

/// The shortest decimal text that reads back as the value, without exponent (7123.456).
std::string decimalText(double value);

/// The nearest whole number (halves away from zero), limited to what 32 bits hold.
std::int32_t nearestLong(double value);

}  // namespace kelvane
