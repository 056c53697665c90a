#pragma once

#include <windows.h>

#include <string>

namespace kelvane::win32 {

/// Paints a window with one line of text alone, straight on the screen: quicker than by a bitmap,
/// and as steady where the text fits. `align` is DT_LEFT, DT_CENTER or DT_RIGHT.
void paintLine(HWND window, const std::wstring& text, HFONT font, COLORREF colour, COLORREF ground,
               UINT align);

/// One painting of a window into a bitmap, put on the screen in one go when it ends. The bitmap is
/// as large as what will be seen of it; places are the window's own.
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
  HGDIOBJ previous_;
};

}  // namespace kelvane::win32
