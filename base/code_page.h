#pragma once

#include <string>
#include <string_view>

namespace kelvane {

// The system's single-byte code page, in which lists and logs are kept as text files.

/// UTF-8 as bytes of the code page; a character that the code page lacks becomes "?" or one that
/// looks alike.
std::string toCodePage(std::string_view utf8);

/// Bytes of the code page as UTF-8; a byte that stands for nothing becomes some character.
std::string fromCodePage(std::string_view bytes);

}  // namespace kelvane
