#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace kelvane {

/// Length of the well-formed UTF-8 sequence that a text which is not empty begins with: no overlong
/// forms, no surrogates, nothing beyond U+10FFFF. 0 where there is none.
std::size_t utf8SequenceLength(std::string_view text);

/// Adds a character to a UTF-8 text; nothing where there is no such character.
void appendCharacter(std::string& text, char32_t character);

/// Takes the last character of a UTF-8 text away, where there is one.
void dropLastCharacter(std::string& text);

/// The characters of a UTF-8 text, in order; a byte that is no UTF-8 counts as U+FFFD.
std::u32string characters(std::string_view text);

}  // namespace kelvane
