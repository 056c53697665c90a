#pragma once

#include <string>
#include <string_view>

namespace kelvane {

/// UTF-8 as Windows wants it; what is no UTF-8 becomes U+FFFD.
std::wstring wide(std::string_view utf8);

/// UTF-16 as the house keeps it; an unpaired surrogate becomes U+FFFD.
std::string narrow(std::wstring_view utf16);

namespace win32 {

/// The text with the line ends that an edit control shows: CR and LF for each LF.
std::string textLines(std::string_view text);

}  // namespace win32

}  // namespace kelvane
