#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace kelvane::ambrel {

/// A text as it is searched in: ASCII letters small, and the accented letters of western Europe
/// without their accents, so that "radio para" finds "Rádio Clube do Pará". Other text stays.
std::string searchForm(std::string_view utf8);

/// The words of a typed search, in search form.
std::vector<std::string> searchWords(std::string_view typed);

/// Whether every word stands somewhere in the text, which is in search form.
bool hasAllWords(std::string_view text, const std::vector<std::string>& words);

}  // namespace kelvane::ambrel
