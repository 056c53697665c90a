#include "win32/paint.h"

namespace kelvane::win32 {

Painting::Painting(HWND window) : window_(window) {
  BeginPaint(window, &paint_);
  GetClientRect(window, &area_);
  memory_ = CreateCompatibleDC(paint_.hdc);
  bitmap_ = CreateCompatibleBitmap(paint_.hdc, area_.right, area_.bottom);
  before_ = SelectObject(memory_, bitmap_);
  SetBkMode(memory_, TRANSPARENT);
}

Painting::~Painting() {
  const RECT& seen = paint_.rcPaint;
  BitBlt(paint_.hdc, seen.left, seen.top, seen.right - seen.left, seen.bottom - seen.top, memory_,
         seen.left, seen.top, SRCCOPY);
  SelectObject(memory_, before_);
  DeleteObject(bitmap_);
  DeleteDC(memory_);
  EndPaint(window_, &paint_);
}

void Painting::fill(const RECT& area, COLORREF colour) const {
  SetDCBrushColor(memory_, colour);
  FillRect(memory_, &area, static_cast<HBRUSH>(GetStockObject(DC_BRUSH)));
}

void Painting::round(const RECT& area, int radius, COLORREF colour, COLORREF outline) const {
  SetDCBrushColor(memory_, colour);
  SetDCPenColor(memory_, outline);
  const HGDIOBJ brush = SelectObject(memory_, GetStockObject(DC_BRUSH));
  const HGDIOBJ pen = SelectObject(memory_, GetStockObject(DC_PEN));
  RoundRect(memory_, area.left, area.top, area.right, area.bottom, radius, radius);
  SelectObject(memory_, pen);
  SelectObject(memory_, brush);
}

void Painting::text(const wchar_t* text, RECT area, HFONT font, COLORREF colour,
                    UINT format) const {
  const HGDIOBJ before = SelectObject(memory_, font);
  SetTextColor(memory_, colour);
  DrawTextW(memory_, text, -1, &area, format);
  SelectObject(memory_, before);
}

}  // namespace kelvane::win32
