#include "win32/meter_paint.h"

#include <algorithm>
#include <array>
#include <string>

#include "win32/colours.h"
#include "win32/fonts.h"
#include "win32/text.h"

namespace kelvane::win32 {

namespace {

/// Three segments for each S unit and for each 10 dB above S9; narrow bars have one.
constexpr int kSegments = 45, kFewSegments = 15;

void fillArea(HDC to, const RECT& area, Colour colour) {
  SetDCBrushColor(to, resolved(colour));
  FillRect(to, &area, static_cast<HBRUSH>(GetStockObject(DC_BRUSH)));
}

int across(const RECT& area, int place) {
  return area.left + MulDiv(area.right - area.left, place, MeterBar::kFull);
}

void paintSegments(HDC to, const RECT& area, int level, const Colours& colours, UINT dpi) {
  const int width = area.right - area.left;
  const int count = width >= kSegments * 3 ? kSegments : kFewSegments;
  const int gap = width >= count * 6 ? std::max(1, scaled(1, dpi)) : 1;
  const int lower = (area.bottom - area.top) / 4;
  for (int i = 0; i < count; ++i) {
    const int from = i * MeterBar::kFull / count, to3 = (i + 1) * MeterBar::kFull / count;
    const bool over = from >= MeterBar::kS9;
    const bool lit = level > (from + to3) / 2;
    RECT segment{across(area, from), area.top, across(area, to3) - gap, area.bottom};
    if (!over) segment.top += lower;
    fillArea(to, segment, !lit ? colours.bar.empty : over ? colours.bar.over : colours.bar.level);
  }
}

/// An upright of some width, with a rim of the ground by which it stands out from lit segments.
RECT paintRim(HDC to, const RECT& area, int place, int width, const Colours& colours, UINT dpi) {
  const int left = std::clamp(across(area, place) - width / 2, static_cast<int>(area.left),
                              static_cast<int>(area.right) - width);
  const int rim = std::max(1, scaled(1, dpi));
  fillArea(to, {left - rim, area.top, left + width + rim, area.bottom}, colours.window);
  return {left, area.top, left + width, area.bottom};
}

void paintSquelch(HDC to, const RECT& area, int place, const Colours& colours, UINT dpi) {
  const RECT line = paintRim(to, area, place, std::max(1, scaled(2, dpi)), colours, dpi);
  const int dash = std::max(2, scaled(3, dpi));
  for (int top = line.top; top < line.bottom; top += 2 * dash)
    fillArea(to, {line.left, top, line.right, std::min<LONG>(line.bottom, top + dash)},
             colours.bar.squelch);
}

void paintMean(HDC to, const RECT& area, int place, const Colours& colours, UINT dpi) {
  const int half = std::max(3, scaled(4, dpi));
  const int middle = std::clamp(across(area, place), static_cast<int>(area.left) + half,
                                static_cast<int>(area.right) - half);
  const std::array<POINT, 3> triangle{{{middle - half, area.bottom},
                                       {middle, area.bottom - half - 1},
                                       {middle + half, area.bottom}}};
  SetDCBrushColor(to, resolved(colours.bar.mean));
  SetDCPenColor(to, resolved(colours.window));
  const HGDIOBJ brush = SelectObject(to, GetStockObject(DC_BRUSH));
  const HGDIOBJ pen = SelectObject(to, GetStockObject(DC_PEN));
  Polygon(to, triangle.data(), static_cast<int>(triangle.size()));
  SelectObject(to, pen);
  SelectObject(to, brush);
}

}  // namespace

void paintMeterBar(HDC to, const RECT& area, const MeterBar& bar, const Colours& colours,
                   UINT dpi) {
  fillArea(to, area, colours.window);
  paintSegments(to, area, bar.live ? bar.level : MeterBar::kNone, colours, dpi);
  // Where the ground and the empty segments are one, the bar has at least a foot.
  if (colours.bar.empty == colours.window)
    fillArea(to, {area.left, area.bottom - 1, area.right, area.bottom}, colours.line);
  if (!bar.live) return;
  if (bar.squelch >= 0) paintSquelch(to, area, bar.squelch, colours, dpi);
  if (bar.mean >= 0) paintMean(to, area, bar.mean, colours, dpi);
  if (bar.peak >= 0)
    fillArea(to, paintRim(to, area, bar.peak, std::max(2, scaled(3, dpi)), colours, dpi),
             colours.bar.peak);
}

void paintMeterScale(HDC to, const RECT& area, bool decibels, HFONT font, const Colours& colours) {
  const HGDIOBJ before = SelectObject(to, font);
  SetBkMode(to, TRANSPARENT);
  SetTextColor(to, resolved(colours.quiet));
  for (const ScaleMark& mark : meterScale(decibels)) {
    const std::wstring text = wide(std::string(mark.text));
    SIZE size{};
    GetTextExtentPoint32W(to, text.c_str(), static_cast<int>(text.size()), &size);
    const int left = std::clamp<int>(across(area, mark.place) - size.cx / 2, area.left,
                                     std::max<int>(area.left, area.right - size.cx));
    ExtTextOutW(to, left, area.top, ETO_CLIPPED, &area, text.c_str(),
                static_cast<UINT>(text.size()), nullptr);
  }
  SelectObject(to, before);
}

void paintLevelLine(HDC to, const RECT& area, int level, const Colours& colours) {
  const bool outlined = colours.bar.empty == colours.window;
  fillArea(to, area, outlined ? colours.line : colours.bar.empty);
  if (outlined) fillArea(to, {area.left, area.top, area.right, area.bottom - 1}, colours.window);
  if (level <= 0) return;
  const int s9 = across(area, MeterBar::kS9), end = across(area, level);
  fillArea(to, {area.left, area.top, std::min(s9, end), area.bottom}, colours.bar.level);
  if (end > s9 + 2) fillArea(to, {s9 + 2, area.top, end, area.bottom}, colours.bar.over);
}

}  // namespace kelvane::win32
