#include "base/code_page.h"

#include <windows.h>

#include "base/encoding.h"
#include "base/win32/utf16.h"

namespace kelvane {

std::string toCodePage(std::string_view utf8) {
  if (isAscii(utf8)) return std::string(utf8);
  const std::wstring text = wide(utf8);
  const int length = static_cast<int>(text.size());
  std::string bytes(
      WideCharToMultiByte(CP_ACP, 0, text.data(), length, nullptr, 0, nullptr, nullptr), '\0');
  WideCharToMultiByte(CP_ACP, 0, text.data(), length, bytes.data(), static_cast<int>(bytes.size()),
                      nullptr, nullptr);
  return bytes;
}

std::string fromCodePage(std::string_view bytes) {
  if (isAscii(bytes)) return std::string(bytes);
  const int size = static_cast<int>(bytes.size());
  std::wstring text(MultiByteToWideChar(CP_ACP, 0, bytes.data(), size, nullptr, 0), L'\0');
  MultiByteToWideChar(CP_ACP, 0, bytes.data(), size, text.data(), static_cast<int>(text.size()));
  return narrow(text);
}

}  // namespace kelvane
