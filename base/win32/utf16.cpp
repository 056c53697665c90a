#include "base/win32/utf16.h"

#include <windows.h>

namespace kelvane {

std::wstring wide(std::string_view utf8) {
  const int size = static_cast<int>(utf8.size());
  std::wstring text(MultiByteToWideChar(CP_UTF8, 0, utf8.data(), size, nullptr, 0), L'\0');
  MultiByteToWideChar(CP_UTF8, 0, utf8.data(), size, text.data(), static_cast<int>(text.size()));
  return text;
}

std::string narrow(std::wstring_view utf16) {
  const int size = static_cast<int>(utf16.size());
  std::string text(
      WideCharToMultiByte(CP_UTF8, 0, utf16.data(), size, nullptr, 0, nullptr, nullptr), '\0');
  WideCharToMultiByte(CP_UTF8, 0, utf16.data(), size, text.data(), static_cast<int>(text.size()),
                      nullptr, nullptr);
  return text;
}

std::string win32::textLines(std::string_view text) {
  std::string lines;
  for (const char c : text) lines += c == '\n' ? std::string("\r\n") : std::string(1, c);
  return lines;
}

}  // namespace kelvane
