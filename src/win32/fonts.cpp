#include "win32/fonts.h"

#include <array>

namespace kelvane::win32 {

namespace {

int CALLBACK found(const LOGFONTW*, const TEXTMETRICW*, DWORD, LPARAM answer) {
  *reinterpret_cast<bool*>(answer) = true;
  return 0;
}

bool installed(const wchar_t* face) {
  HDC screen = GetDC(nullptr);
  LOGFONTW wanted{};
  wanted.lfCharSet = DEFAULT_CHARSET;
  lstrcpynW(wanted.lfFaceName, face, LF_FACESIZE);
  bool answer = false;
  EnumFontFamiliesExW(screen, &wanted, found, reinterpret_cast<LPARAM>(&answer), 0);
  ReleaseDC(nullptr, screen);
  return answer;
}

template <std::size_t N>
const wchar_t* firstInstalled(const std::array<const wchar_t*, N>& faces) {
  for (const wchar_t* face : faces) {
    if (installed(face)) return face;
  }
  return faces.back();
}

HFONT make(const wchar_t* face, int height, int weight, UINT dpi) {
  return CreateFontW(-scaled(height, dpi), 0, 0, 0, weight, FALSE, FALSE, FALSE, DEFAULT_CHARSET,
                     OUT_DEFAULT_PRECIS, CLIP_DEFAULT_PRECIS, CLEARTYPE_QUALITY, DEFAULT_PITCH,
                     face);
}

}  // namespace

// Looked up once: asking the system for a font's presence takes longer than making it.
const wchar_t* textFont() {
  static const wchar_t* const text =
      firstInstalled(std::array{L"Segoe UI", L"DejaVu Sans", L"Tahoma"});
  return text;
}

Fonts::Fonts(UINT dpi) {
  const wchar_t* const text = textFont();
  static const wchar_t* const digits = firstInstalled(std::array{
      L"Bahnschrift SemiCondensed", L"DejaVu Sans Condensed", L"Liberation Sans", L"Arial"});
  fonts_ = {make(text, 11, FW_NORMAL, dpi), make(text, 12, FW_NORMAL, dpi),
            make(text, 13, FW_BOLD, dpi),   make(digits, 62, FW_BOLD, dpi),
            make(text, 26, FW_BOLD, dpi),   make(text, 10, FW_NORMAL, dpi)};
}

Fonts::~Fonts() {
  for (HFONT font : fonts_) DeleteObject(font);
}

}  // namespace kelvane::win32
