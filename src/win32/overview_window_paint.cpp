#include <algorithm>
#include <array>

#include "base/text.h"
#include "overview/setting_copy.h"
#include "win32/overview_window.h"
#include "win32/paint.h"
#include "win32/text.h"

namespace kelvane::win32 {

namespace {

constexpr UINT kCell = DT_SINGLELINE | DT_VCENTER | DT_NOPREFIX | DT_END_ELLIPSIS;
constexpr int kRowSegments = 40;

/// The upper or the lower half of a cell that holds two lines.
RECT half(RECT area, bool lower) {
  const LONG middle = (area.top + area.bottom) / 2;
  (lower ? area.top : area.bottom) = middle;
  return area;
}

bool overlaps(const RECT& a, const RECT& b) {
  RECT both{};
  return IntersectRect(&both, &a, &b) != 0;
}

/// Nine digits in groups, "000.518.000", and how many characters of it come before the number.
struct Grouped {
  std::wstring text;
  std::size_t faint;
};
Grouped grouped(Hz frequency) {
  std::wstring digits = std::to_wstring(frequency);
  digits.insert(0, 9 - std::min<std::size_t>(9, digits.size()), L'0');
  std::wstring text = digits.substr(0, 3) + L"." + digits.substr(3, 3) + L"." + digits.substr(6);
  return {text, std::min(text.find_first_not_of(L"0."), text.size() - 1)};
}

}  // namespace

/// On the marked row what is a colour elsewhere is the letters' own.
Colour OverviewWindow::ink(const OverviewRow& row, Colour otherwise) const {
  return row.shown ? colours().onSelection : otherwise;
}

void OverviewWindow::paint(HWND window) {
  const Painting on(window);
  const Colours& c = colours();
  on.fill(on.area(), resolved(c.window));
  const struct {
    int left, right;
    const wchar_t* words;
  } heads[] = {{columns_.name, columns_.frequency, L"Receiver"},
               {columns_.frequency, columns_.mode, L"Frequency"},
               {columns_.mode, columns_.station, L"Mode"},
               {columns_.station, columns_.level, L"Station now"},
               {columns_.level, columns_.minute, L"Level"},
               {columns_.minute, columns_.moved, L"Last minute"},
               {columns_.moved, columns_.end, L"Moved by (UTC)"}};
  for (const auto& head : heads)
    on.text(head.words, {head.left, 0, head.right, px(28)}, font(Font::Normal), resolved(c.quiet),
            kCell);
  RECT strip = on.area();
  strip.top = strip.bottom - px(44);
  strip.left += px(12);
  strip.right -= px(216);
  // One line or two, in the middle beside the buttons.
  constexpr UINT kWords = DT_WORDBREAK | DT_NOPREFIX;
  const std::wstring words = wide(status_);
  RECT needed = strip;
  const HGDIOBJ before = SelectObject(on.dc(), font(Font::Normal));
  DrawTextW(on.dc(), words.c_str(), -1, &needed, kWords | DT_CALCRECT);
  SelectObject(on.dc(), before);
  strip.top += std::max<LONG>((strip.bottom - strip.top - (needed.bottom - needed.top)) / 2, 0);
  on.text(words.c_str(), strip, font(Font::Normal), resolved(c.quiet), kWords | DT_END_ELLIPSIS);
}

/// A broken frame round the row that a dragged one would be dropped on.
void OverviewWindow::paintTarget(const Painting& on) const {
  const RECT& whole = on.area();
  const COLORREF colour = resolved(colours().accent);
  const LONG thick = px(2), dash = px(8), step = px(13);
  for (LONG x = whole.left; x < whole.right; x += step) {
    on.fill({x, whole.top, x + dash, whole.top + thick}, colour);
    on.fill({x, whole.bottom - thick, x + dash, whole.bottom}, colour);
  }
  for (const LONG x : {whole.left, whole.right - thick})
    on.fill({x, whole.top, x + thick, whole.bottom}, colour);
}

void OverviewWindow::paintRow(HWND window, int number) {
  const Painting on(window);
  const Colours& c = colours();
  const OverviewRow& row = rows_[static_cast<std::size_t>(number)].shown;
  const Columns& at = columns_;
  on.fill(on.area(), resolved(row.shown ? c.selection : c.field));
  const RECT whole = on.area();
  on.fill({0, whole.bottom - 1, whole.right, whole.bottom}, resolved(c.line));
  if (row.shown) on.fill({0, 0, px(4), whole.bottom}, resolved(c.accent));
  const auto write = [&](RECT area, const std::string& words, Font kind, Colour colour) {
    area.right -= px(6);
    if (overlaps(area, on.dirty()))
      on.text(wide(words).c_str(), area, font(kind), resolved(ink(row, colour)), kCell);
  };
  write(cell(at.number, at.name), std::to_string(number + 1), Font::Normal, c.quiet);
  const RECT name = cell(at.name, at.frequency);
  const bool locked = row.online && !row.remote;
  write(locked ? half(name, false) : name, row.name, Font::Bold, c.text);
  if (locked) write(half(name, true), "no remote control", Font::Small, c.warning);
  const RECT frequency = cell(at.frequency, at.mode);
  if (!row.online) {
    write(cell(at.frequency, at.level), row.link, Font::Bold, c.warning);
  } else if (!row.entry.empty()) {
    write(frequency, row.entry + "_ kHz", Font::Bold, c.accent);
  } else if (overlaps(frequency, on.dirty())) {
    paintFrequency(on, row, frequency);
  }
  const RECT mode = cell(at.mode, at.station), reading = cell(at.reading, at.minute);
  if (row.online && row.settings.empty()) {
    write(mode, row.mode, Font::Normal, c.text);
  } else if (row.online) {
    write(half(mode, false), row.mode, Font::Normal, c.text);
    write(half(mode, true), row.settings, Font::Small, c.quiet);
  }
  if (row.online) {
    write(cell(at.station, at.level), row.station, Font::Normal, c.text);
    write(half(reading, false), row.reading, Font::Bold, c.text);
    write(half(reading, true), row.squelch, Font::Small, c.quiet);
  }
  if (overlaps(cell(at.level, at.reading), on.dirty()))
    paintLevel(on, row, cell(at.level, at.reading - px(6)));
  if (overlaps(cell(at.minute, at.moved), on.dirty()))
    paintMinute(on, row, cell(at.minute, at.moved - px(10)));
  RECT moved = cell(at.moved, at.end);
  write(moved, row.movedBy, Font::Normal, c.quiet);
  if (number == target_) return paintTarget(on);
  if (number == typing_) {
    SetDCPenColor(on.dc(), resolved(c.focus));
    const HGDIOBJ pen = SelectObject(on.dc(), GetStockObject(DC_PEN));
    const HGDIOBJ brush = SelectObject(on.dc(), GetStockObject(NULL_BRUSH));
    for (int i = 0; i < px(2); ++i) Rectangle(on.dc(), i, i, whole.right - i, whole.bottom - i);
    SelectObject(on.dc(), brush);
    SelectObject(on.dc(), pen);
  }
}

void OverviewWindow::paintFrequency(const Painting& on, const OverviewRow& row, RECT area) const {
  if (row.frequency < 0) return;
  const Colours& c = colours();
  const HDC dc = on.dc();
  const HGDIOBJ before = SelectObject(dc, digits_);
  SIZE digit{}, point{};
  GetTextExtentPoint32W(dc, L"0", 1, &digit);
  GetTextExtentPoint32W(dc, L".", 1, &point);
  const auto [text, faint] = grouped(row.frequency);
  const COLORREF ground = resolved(row.shown ? c.selection : c.field);
  int x = area.left;
  const int y = (area.bottom - digit.cy) / 2;
  for (std::size_t i = 0; i < text.size(); ++i) {
    const bool hertz = i >= 8;
    SetTextColor(dc, i < faint ? blended(ground, resolved(c.faint), 200)
                     : hertz   ? resolved(ink(row, c.quiet))
                               : resolved(ink(row, c.text)));
    ExtTextOutW(dc, x, y, 0, nullptr, &text[i], 1, nullptr);
    x += text[i] == L'.' ? point.cx : digit.cx;
  }
  SelectObject(dc, before);
}

/// Segments up to the level; the peak stands, the mean is a mark below, the squelch a broken line.
void OverviewWindow::paintLevel(const Painting& on, const OverviewRow& row, RECT area) const {
  if (!row.bar.live) return;
  const Colours::Bar& c = colours().bar;
  InflateRect(&area, 0, -px(11));
  const int width = static_cast<int>(area.right - area.left);
  const auto x = [&](int place) { return area.left + MulDiv(width, place, MeterBar::kFull); };
  const int gap = std::max(px(1), 1);
  for (int i = 0; i < kRowSegments; ++i) {
    const int from = i * MeterBar::kFull / kRowSegments,
              to = (i + 1) * MeterBar::kFull / kRowSegments;
    const bool lit = row.bar.level > from;
    const bool over = from >= MeterBar::kS9;
    on.fill({x(from), area.top, x(to) - gap, area.bottom}, resolved(!lit   ? c.empty
                                                                    : over ? c.over
                                                                           : c.level));
  }
  if (row.bar.squelch >= 0) {
    for (LONG y = area.top - px(3); y < area.bottom + px(3); y += px(4))
      on.fill({x(row.bar.squelch), y, x(row.bar.squelch) + gap, y + px(2)}, resolved(c.squelch));
  }
  if (row.bar.mean >= 0)
    on.fill({x(row.bar.mean) - px(2), area.bottom + px(1), x(row.bar.mean) + px(2),
             area.bottom + px(4)},
            resolved(row.shown ? colours().onSelection : c.mean));
  if (row.bar.peak >= 0)
    on.fill(
        {x(row.bar.peak) - px(1), area.top - px(2), x(row.bar.peak) + px(1), area.bottom + px(2)},
        resolved(row.shown ? colours().onSelection : c.peak));
}

void OverviewWindow::paintMinute(const Painting& on, const OverviewRow& row, RECT area) const {
  constexpr int kTop = -200, kBottom = -1300;  // tenths of a dB
  InflateRect(&area, 0, -px(5));
  const auto seconds = static_cast<int>(row.minute.size());
  const auto x = [&](int second) {
    return area.left + MulDiv(static_cast<int>(area.right - area.left), second, seconds - 1);
  };
  const auto y = [&](int tenths) {
    const int inside = std::clamp(tenths, kBottom, kTop);
    return area.bottom -
           MulDiv(static_cast<int>(area.bottom - area.top), inside - kBottom, kTop - kBottom);
  };
  const Colour colour = ink(row, colours().accent);
  const HPEN pen = CreatePen(PS_SOLID, std::max(px(1), 1), resolved(colour));
  const HGDIOBJ before = SelectObject(on.dc(), pen);
  std::array<POINT, 60> line;
  DWORD points = 0;
  const auto end = [&] {
    if (points == 1) {
      line[points] = {line[0].x + 1, line[0].y};
      ++points;
    }
    if (points > 1) Polyline(on.dc(), line.data(), static_cast<int>(points));
    points = 0;
  };
  // A slow radio has seconds without a reading; only a gap in its levels parts the line.
  for (int i = 0; i < seconds; ++i) {
    const OverviewRow::Second& second = row.minute[static_cast<std::size_t>(i)];
    if (second.afterGap) end();
    if (second.known) line[points++] = {x(i), y(second.mean)};
  }
  end();
  SelectObject(on.dc(), before);
  DeleteObject(pen);
}

}  // namespace kelvane::win32
