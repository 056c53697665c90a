#include <algorithm>
#include <utility>

#include "gui/win32/accessible.h"
#include "overview/trace_lines.h"
#include "win32/text.h"
#include "win32/traces_window.h"

namespace kelvane::win32 {

namespace {

constexpr int kScaleWidth = 46, kTimeHeight = 22;

/// A colour as the canvas keeps it.
std::uint32_t pixelOf(Colour colour) {
  const COLORREF ref = resolved(colour);
  return static_cast<std::uint32_t>(GetRValue(ref) << 16 | GetGValue(ref) << 8 | GetBValue(ref));
}

}  // namespace

RECT TracesWindow::plotArea() const {
  return {px(kScaleWidth), px(8), canvas_.width() - px(10), canvas_.height() - px(kTimeHeight)};
}

int TracesWindow::plotWidth() const {
  const RECT area = plotArea();
  return std::max(static_cast<int>(area.right - area.left), 1);
}

void TracesWindow::fill(const RECT& area, Colour colour) {
  SetDCBrushColor(canvas_.dc(), resolved(colour));
  FillRect(canvas_.dc(), &area, static_cast<HBRUSH>(GetStockObject(DC_BRUSH)));
}

void TracesWindow::write(const std::string& words, RECT area, Colour colour, UINT align) {
  const HGDIOBJ before = SelectObject(canvas_.dc(), font(Font::Small));
  SetTextColor(canvas_.dc(), resolved(colour));
  DrawTextW(canvas_.dc(), wide(words).c_str(), -1, &area,
            align | DT_SINGLELINE | DT_VCENTER | DT_NOPREFIX | DT_NOCLIP);
  SelectObject(canvas_.dc(), before);
}

void TracesWindow::drawPlot() {
  const RECT area = plotArea();
  const TraceFrame frame = traces_.frame(plotWidth(), static_cast<int>(area.bottom - area.top));
  fill({0, 0, canvas_.width(), canvas_.height()}, colours().field);
  drawGrid(frame, area);
  drawTraces(frame, area);
  drawMarks(frame, area);
  drawLegend(frame, area);
  drawCursor(frame, area);
  std::string spoken = frame.cursor < 0 ? "Levels of the receivers" : "";
  for (const std::string& words : frame.cursorWords) spoken += (spoken.empty() ? "" : ", ") + words;
  if (std::exchange(spoken_, spoken) != spoken) {
    SetWindowTextW(plot_, wide(spoken).c_str());
    speakAs(plot_, spoken);
  }
  if (GetFocus() != plot_) return;
  RECT whole{0, 0, canvas_.width(), canvas_.height()};
  SetDCBrushColor(canvas_.dc(), resolved(colours().focus));
  for (int i = 0; i < px(2); ++i) {
    FrameRect(canvas_.dc(), &whole, static_cast<HBRUSH>(GetStockObject(DC_BRUSH)));
    InflateRect(&whole, -1, -1);
  }
}

void TracesWindow::drawGrid(const TraceFrame& frame, const RECT& area) {
  const Colours& c = colours();
  const int line = std::max(px(1), 1);
  for (const TraceFrame::Tick& tick : frame.levels) {
    const LONG y = area.top + tick.at;
    fill({area.left, y, area.right, y + line}, c.grid);
    write(tick.words, {0, y - px(8), area.left - px(6), y + px(8)}, c.quiet, DT_RIGHT);
  }
  for (const TraceFrame::Tick& tick : frame.times) {
    const LONG x = area.left + tick.at;
    fill({x, area.top, x + line, area.bottom}, c.grid);
    if (x + px(26) < area.right + px(10))
      write(tick.words, {x - px(40), area.bottom + px(2), x + px(40), area.bottom + px(20)},
            c.quiet, DT_CENTER);
  }
  const bool any = std::ranges::any_of(frame.traces, [](const TraceFrame::Trace& trace) {
    return std::ranges::any_of(trace.columns, [](const LevelSpan& s) { return s.readings > 0; });
  });
  if (!any) write("No levels at this time", area, c.quiet, DT_CENTER);
}

/// Into the part of the canvas inside the scales.
void TracesWindow::drawTraces(const TraceFrame& frame, const RECT& area) {
  GdiFlush();
  if (canvas_.pixels().empty()) return;
  const auto size = static_cast<std::size_t>(frame.width) * static_cast<std::size_t>(frame.height);
  plotted_.resize(std::max(plotted_.size(), size));
  const Pixels pixels{{plotted_.data(), size}, frame.width, frame.height};
  const std::ptrdiff_t rowLength = canvas_.width();
  const PixelRows rows{canvas_.pixels().data() + area.top * rowLength + area.left, rowLength};
  copyFromRows(pixels, rows);
  for (const TraceFrame::Trace& trace : frame.traces) {
    const auto place = static_cast<std::size_t>(trace.rx);
    LineStyle style{pixelOf(colours().traces[place]), px(3) / 2.0, kTraceDashes[place],
                    px(100) / 100.0, 255};
    LineStyle quiet = style;
    quiet.share = 56;
    drawBand(pixels, trace.columns, frame.scale, quiet);
    const bool rolled = traces_.showsMean() && !trace.rolled.empty();
    if (rolled) style.share = 90;
    drawLine(pixels, trace.columns, frame.scale, style, Through::Mean, frame.longestPause);
    style.share = 255;
    if (rolled) {
      style.thickness = px(2);
      drawLine(pixels, trace.rolled, frame.scale, style, Through::Mean, frame.longestPause);
    }
    if (traces_.showsPeak() && !trace.rolled.empty()) {
      style.thickness = px(1);
      drawLine(pixels, trace.rolled, frame.scale, style, Through::Greatest, frame.longestPause);
    }
  }
  copyToRows(pixels, rows);
}

/// Words that would lie under the next mark's are left out: that one tells what was tuned last.
void TracesWindow::drawMarks(const TraceFrame& frame, const RECT& area) {
  for (std::size_t i = 0; i < frame.marks.size(); ++i) {
    const TraceFrame::Mark& mark = frame.marks[i];
    const Colour colour = colours().traces[static_cast<std::size_t>(mark.rx)];
    const LONG x = area.left + mark.x;
    fill({x, area.top, x + std::max(px(1), 1), area.bottom}, colour);
    const int width = widthOf(mark.words, font(Font::Small)) + px(8);
    const auto next = i + 1;
    if (next < frame.marks.size() && frame.marks[next].rx == mark.rx &&
        frame.marks[next].x - mark.x < width)
      continue;
    const LONG y = area.bottom - px(16) * (mark.rx + 1);
    const bool left = x + width > area.right;
    const RECT words{left ? x - px(124) : x + px(4), y, left ? x - px(4) : x + px(124), y + px(16)};
    write(mark.words, words, colour, left ? DT_RIGHT : DT_LEFT);
  }
}

/// Each receiver's name beside a piece of its line.
void TracesWindow::drawLegend(const TraceFrame& frame, const RECT& area) {
  LONG x = area.left + px(10);
  const LONG y = area.top + px(12);
  for (const TraceFrame::Trace& trace : frame.traces) {
    const auto place = static_cast<std::size_t>(trace.rx);
    const Colour colour = colours().traces[place];
    LONG at = x;
    bool gap = false;
    std::size_t part = 0;
    while (at < x + px(30)) {
      const std::uint8_t dash = kTraceDashes[place][part];
      const LONG length = dash == 0 ? px(30) : px(dash);
      if (!gap) fill({at, y - px(1), std::min<LONG>(at + length, x + px(30)), y + px(1)}, colour);
      at += length;
      gap = !gap;
      part = part + 1 < kTraceDashes[place].size() && kTraceDashes[place][part + 1] ? part + 1 : 0;
    }
    const std::string name = traces_.name(trace.rx);
    const int width = widthOf(name, font(Font::Small));
    write(name, {x + px(36), y - px(9), x + px(36) + width, y + px(9)}, colours().text, DT_LEFT);
    x += px(36) + width + px(22);
  }
}

/// The box stands beside the line that it speaks of.
void TracesWindow::drawCursor(const TraceFrame& frame, const RECT& area) {
  if (frame.cursor < 0) return;
  const LONG x = area.left + frame.cursor;
  for (LONG y = area.top; y < area.bottom; y += px(6))
    fill({x, y, x + std::max(px(1), 1), std::min<LONG>(y + px(3), area.bottom)}, colours().text);
  int width = 0;
  for (const std::string& words : frame.cursorWords)
    width = std::max(width, widthOf(words, font(Font::Small)));
  width += px(16);
  const bool left = x + px(10) + width > area.right;
  const LONG from = left ? x - px(10) - width : x + px(10);
  const LONG top = area.top + px(26);
  const auto lines = static_cast<int>(frame.cursorWords.size());
  RECT box{from, top, from + width, top + px(16) * lines + px(8)};
  fill(box, colours().window);
  SetDCBrushColor(canvas_.dc(), resolved(colours().line));
  FrameRect(canvas_.dc(), &box, static_cast<HBRUSH>(GetStockObject(DC_BRUSH)));
  for (int i = 0; i < lines; ++i)
    write(frame.cursorWords[static_cast<std::size_t>(i)],
          {from + px(8), top + px(4) + i * px(16), from + width, top + px(20) + i * px(16)},
          colours().text, DT_LEFT);
}

}  // namespace kelvane::win32
