#pragma once

#include <string>
#include <string_view>

namespace kelvane {

/// UTF-8 in letters of ASCII, for formats that have no others: accents are left out, Cyrillic and
/// Greek are spelled in Latin letters, and what has no spelling becomes its number, as \u4E2D.
std::string transliterated(std::string_view utf8);

}  // namespace kelvane
