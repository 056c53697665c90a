#include <algorithm>

#include "win32/colours.h"
#include "win32/grid_window.h"
#include "win32/paint.h"
#include "win32/text.h"

namespace kelvane::win32 {

namespace {

/// No cell shows more characters.
constexpr std::size_t kLongestShown = 512;

}  // namespace

struct GridWindow::Look {
  bool focused;
  COLORREF ground, text, fixed, line, marked, markedText, currentRow;

  Look(const Palette& palette, bool hasFocus) : focused(hasFocus) {
    const Colours& set = palette.windows;
    const bool contrast = palette.contrast;
    ground = resolved(set.field);
    text = resolved(set.text);
    fixed = resolved(contrast ? set.button : set.window);
    line = resolved(set.line);
    marked = resolved(set.pressed);
    markedText = resolved(contrast ? set.onSelection : set.text);
    currentRow = resolved(contrast ? set.field : set.selection);
  }
};

void GridWindow::paint() const {
  const Painting on(window_);
  const Look look(colours_.dialogs(), hasFocus());
  on.fill(on.dirty(), look.ground);
  const HGDIOBJ before = SelectObject(on.dc(), font_);
  const GridRow rows = grid_.table().rows();
  const GridRow end = std::min(rows, grid_.top() + grid_.page() + 1);
  for (GridRow row = grid_.top(); row < end; ++row) {
    const RECT line = cellArea({row, 0});
    if (line.bottom > on.dirty().top && line.top < on.dirty().bottom) paintRow(on, row, look);
  }
  SelectObject(on.dc(), before);
}

void GridWindow::paintRow(const Painting& on, GridRow row, const Look& look) const {
  const int columns = static_cast<int>(grid_.columns().size());
  RECT cell = cellArea({row, 0});
  for (int column = 0; column < columns; ++column) {
    cell.right = cell.left + columnWidth(column);
    if (cell.right > cell.left && cell.right > 0 && cell.left < on.area().right)
      paintCell(on, {row, column}, cell, look);
    cell.left = cell.right;
  }
}

void GridWindow::paintCell(const Painting& on, GridCell cell, const RECT& area,
                           const Look& look) const {
  const GridColumn& column = grid_.columns()[cell.column];
  const bool current = cell == grid_.current();
  const bool marked = current && look.focused;
  COLORREF ground = cell.row == grid_.current().row ? look.currentRow : look.ground;
  COLORREF text = look.text;
  if (!column.editable) ground = look.fixed;
  if (marked) {
    ground = look.marked;
    text = look.markedText;
  }
  on.fill(area, look.line);
  RECT inside{area.left, area.top, area.right - 1, area.bottom - 1};
  if (current && !marked) {
    on.fill(inside, look.marked);
    InflateRect(&inside, -1, -1);
  }
  on.fill(inside, ground);
  inside.left += scaled(4);
  inside.right -= scaled(4);
  if (current && column.pick) {
    RECT button = buttonArea(area);
    inside.right = button.left - scaled(2);
    DrawFrameControl(on.dc(), &button, DFC_SCROLL, DFCS_SCROLLCOMBOBOX);
  }
  paintText(on.dc(), inside, text, cell);
}

void GridWindow::paintText(HDC dc, RECT inside, COLORREF colour, GridCell cell) const {
  std::wstring words = wide(grid_.table().cell(cell.row, cell.column));
  words.resize(std::min(words.size(), kLongestShown));
  if (words.empty() || inside.right <= inside.left) return;
  SetTextColor(dc, colour);
  const bool right = grid_.columns()[cell.column].right;
  const int length = static_cast<int>(words.size());
  // To measure a text costs more than to write it: only one that may be too long is measured.
  if (length * widestCharacter_ > inside.right - inside.left) {
    DrawTextW(
        dc, words.c_str(), length, &inside,
        (right ? DT_RIGHT : DT_LEFT) | DT_VCENTER | DT_SINGLELINE | DT_NOPREFIX | DT_END_ELLIPSIS);
    return;
  }
  SetTextAlign(dc, right ? TA_RIGHT : TA_LEFT);
  ExtTextOutW(dc, right ? inside.right : inside.left, inside.top + scaled(2), ETO_CLIPPED, &inside,
              words.c_str(), static_cast<UINT>(length), nullptr);
  SetTextAlign(dc, TA_LEFT);
}

}  // namespace kelvane::win32
