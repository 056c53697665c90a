#pragma once

#include <windows.h>

namespace kelvane::win32 {

/// One painting of a window into a bitmap of its own size, put on the screen in one go when it
/// ends.
class Painting {
 public:
  explicit Painting(HWND window);
  ~Painting();
  Painting(const Painting&) = delete;
  Painting& operator=(const Painting&) = delete;

  HDC dc() const { return memory_; }
  const RECT& area() const { return area_; }
  /// What of it will be seen; the rest need not be painted.
  const RECT& dirty() const { return paint_.rcPaint; }

  void fill(const RECT& area, COLORREF colour) const;
  /// A filled rectangle with rounded corners and an outline.
  void round(const RECT& area, int radius, COLORREF colour, COLORREF outline) const;
  void text(const wchar_t* text, RECT area, HFONT font, COLORREF colour, UINT format) const;

 private:
  HWND window_;
  PAINTSTRUCT paint_;
  RECT area_;
  HDC memory_;
  HBITMAP bitmap_;
  HGDIOBJ before_;
};

}  // namespace kelvane::win32
