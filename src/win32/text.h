#pragma once

#include <windows.h>

#include <string>

#include "base/win32/utf16.h"

namespace kelvane::win32 {

/// The whole text of a window.
inline std::wstring windowText(HWND window) {
  std::wstring text(GetWindowTextLengthW(window), L'\0');
  text.resize(GetWindowTextW(window, text.data(), static_cast<int>(text.size()) + 1));
  return text;
}

}  // namespace kelvane::win32
