#pragma once

#include <windows.h>

namespace kelvane::win32 {

/// Which of the keys that change others are held: Shift 1, Ctrl 2, Alt 4.
inline int heldKeys() {
  const auto down = [](int key) { return GetKeyState(key) < 0; };
  return (down(VK_SHIFT) ? 1 : 0) | (down(VK_CONTROL) ? 2 : 0) | (down(VK_MENU) ? 4 : 0);
}

}  // namespace kelvane::win32
