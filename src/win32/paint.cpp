#include "win32/paint.h"

#include <algorithm>

namespace kelvane::win32 {

namespace {

constexpr wchar_t kGoesOn[] = L" \u2026";

int widthOf(HDC screen, const std::wstring& text) {
  SIZE size{};
  GetTextExtentPoint32W(screen, text.data(), static_cast<int>(text.size()), &size);
  return static_cast<int>(size.cx);
}

/// As many of a text's names, which stand between commas or semicolons, as fit into a width; the
/// whole text where not even the first one does.
std::wstring namesThatFit(HDC screen, const std::wstring& text, int width) {
  for (std::size_t end = text.size(); end > 0;) {
    end = text.find_last_of(L",;", end - 1);
    if (end == text.npos) break;
    // A comma within a number parts no names.
    if (end + 1 >= text.size() || text[end + 1] != L' ') continue;
    std::wstring names = text.substr(0, end + 1) + kGoesOn;
    if (widthOf(screen, names) <= width) return names;
  }
  return text;
}

}  // namespace

void paintLine(HWND window, const std::wstring& whole, HFONT font, COLORREF colour, COLORREF ground,
               UINT align) {
  PAINTSTRUCT paint;
  const HDC screen = BeginPaint(window, &paint);
  RECT area;
  GetClientRect(window, &area);
  // Taken back by the end of the painting, as the colours are.
  SelectObject(screen, font);
  SetTextColor(screen, colour);
  SetBkColor(screen, ground);
  SIZE size{};
  GetTextExtentPoint32W(screen, whole.data(), static_cast<int>(whole.size()), &size);
  std::wstring shorter;
  if (size.cx > area.right) {
    shorter = namesThatFit(screen, whole, static_cast<int>(area.right));
    GetTextExtentPoint32W(screen, shorter.data(), static_cast<int>(shorter.size()), &size);
  }
  const std::wstring& text = shorter.empty() ? whole : shorter;
  const LONG spare = area.right - size.cx;
  const LONG left = align == DT_LEFT ? 0 : align == DT_RIGHT ? spare : spare / 2;
  const LONG top = (area.bottom - size.cy) / 2;
  ExtTextOutW(screen, left, top, ETO_OPAQUE | ETO_CLIPPED, &area, text.data(),
              spare < 0 ? 0 : static_cast<UINT>(text.size()), nullptr);
  if (spare < 0)
    DrawTextW(screen, text.c_str(), -1, &area,
              align | DT_VCENTER | DT_SINGLELINE | DT_END_ELLIPSIS | DT_NOPREFIX);
  EndPaint(window, &paint);
}

Painting::Painting(HWND window) : window_(window) {
  BeginPaint(window, &paint_);
  GetClientRect(window, &area_);
  memory_ = CreateCompatibleDC(paint_.hdc);
  const RECT& seen = paint_.rcPaint;
  bitmap_ = CreateCompatibleBitmap(paint_.hdc, std::max<int>(seen.right - seen.left, 1),
                                   std::max<int>(seen.bottom - seen.top, 1));
  previous_ = SelectObject(memory_, bitmap_);
  SetWindowOrgEx(memory_, seen.left, seen.top, nullptr);
  SetBkMode(memory_, TRANSPARENT);
}

Painting::~Painting() {
  const RECT& seen = paint_.rcPaint;
  BitBlt(paint_.hdc, seen.left, seen.top, seen.right - seen.left, seen.bottom - seen.top, memory_,
         seen.left, seen.top, SRCCOPY);
  SelectObject(memory_, previous_);
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
