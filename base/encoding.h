#pragma once

#include <string>
#include <string_view>

namespace kelvane {

/// What some programs put before the first character of a UTF-8 file.
inline constexpr std::string_view kUtf8Mark = "\xEF\xBB\xBF";

bool isAscii(std::string_view bytes);

/// Whether the bytes are well-formed UTF-8: no overlong forms, no surrogates, nothing beyond
/// U+10FFFF.
bool isUtf8(std::string_view bytes);

/// Latin-1 bytes as UTF-8.
std::string utf8FromLatin1(std::string_view bytes);

}  // namespace kelvane
