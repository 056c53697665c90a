#pragma once

#include <windows.h>

#include <string>
#include <string_view>

namespace kelvane::win32 {

std::wstring wide(std::string_view utf8);
std::string narrow(std::wstring_view utf16);

/// The whole text of a window.
std::wstring windowText(HWND window);

}  // namespace kelvane::win32
