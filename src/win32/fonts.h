#pragma once

#include <windows.h>

#include <array>

#include "ui/main_controls.h"

namespace kelvane::win32 {

/// Pixels for a length in 96ths of an inch.
inline int scaled(int length, UINT dpi) { return MulDiv(length, static_cast<int>(dpi), 96); }

/// The installed font that texts are written in.
const wchar_t* textFont();

/// The fonts of a window at one resolution.
class Fonts {
 public:
  explicit Fonts(UINT dpi);
  ~Fonts();
  Fonts(const Fonts&) = delete;
  Fonts& operator=(const Fonts&) = delete;

  HFONT operator[](Font font) const { return fonts_[static_cast<int>(font)]; }

 private:
  std::array<HFONT, 6> fonts_;
};

}  // namespace kelvane::win32
