#pragma once

#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace kelvane {

/// The letters that press a button or select a tab together with Alt. Buttons have theirs for good:
/// it stands in their caption. Receivers' tabs take what is left, so that no letter means two
/// things.

/// A character in lower case: Latin, Greek and Cyrillic letters; others stay.
char32_t lowerCase(char32_t character);

/// The letter that a caption marks with "&", in lower case; 0 where it marks none.
char32_t markedLetter(std::string_view caption);

/// A caption for each name, in order: it marks the name's first letter that neither `taken` nor a
/// name before has, else its first such digit, else nothing. An "&" of the name stays one to see.
std::vector<std::string> markedCaptions(std::span<const std::string> names, std::u32string taken);

}  // namespace kelvane
