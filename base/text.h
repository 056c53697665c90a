#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace kelvane {

/// The text without blanks, tabs and line ends at either end.
std::string_view trimmed(std::string_view text);

/// The parts between separators; always at least one, for an empty text an empty part.
std::vector<std::string_view> split(std::string_view text, char separator);

constexpr bool isDigit(int character) { return character >= '0' && character <= '9'; }
constexpr bool isCapital(int character) { return character >= 'A' && character <= 'Z'; }
constexpr bool isSmall(int character) { return character >= 'a' && character <= 'z'; }

/// An ASCII letter in the other case; anything else stays.
constexpr int upperLetter(int character) { return isSmall(character) ? character - 32 : character; }
constexpr int lowerLetter(int character) {
  return isCapital(character) ? character + 32 : character;
}

/// ASCII letters in upper or lower case; other bytes (of UTF-8 too) stay.
std::string upper(std::string_view text);
std::string lower(std::string_view text);

/// Whether a text holds another, given in upper case, in any case of ASCII letters. Copies nothing.
bool holdsUpper(std::string_view text, std::string_view upperText);

/// The text with each byte that is no part of well-formed UTF-8 replaced.
std::string validUtf8(std::string_view text, char replacement);

/// How many characters a UTF-8 text has; a byte that is no UTF-8 may count as one.
std::size_t characterCount(std::string_view text);

/// A caption as it is spoken: without the sign of its key, "&", and without a colon at its end.
std::string spokenCaption(std::string_view caption);

bool equalIgnoringCase(std::string_view a, std::string_view b);

}  // namespace kelvane
