#include <windows.h>

#include <commctrl.h>

#include <algorithm>
#include <cstdlib>
#include <utility>

#include "gui/win32/text_size.h"
#include "win32/accessible.h"
#include "win32/fonts.h"
#include "win32/grid_window.h"
#include "win32/text.h"

// What a grid consists of on the screen: its places, and what its parts show.

namespace kelvane::win32 {

namespace {

/// Most items that a pick list shows without scrolling.
constexpr int kMostItems = 12;

void setParam(HWND header, int item, UINT mask, int width, int format) {
  HDITEMW now{};
  now.mask = mask;
  SendMessageW(header, HDM_GETITEMW, static_cast<WPARAM>(item), reinterpret_cast<LPARAM>(&now));
  if (now.cxy == width && now.fmt == format) return;
  now.cxy = width;
  now.fmt = format;
  SendMessageW(header, HDM_SETITEMW, static_cast<WPARAM>(item), reinterpret_cast<LPARAM>(&now));
}

}  // namespace

int GridWindow::scaled(int length) const { return win32::scaled(length, resolution_); }

void GridWindow::setFont(HFONT font) {
  font_ = font;
  // Asked once for each layout: every painted cell is measured by it.
  resolution_ = resolutionOf(window_);
  HDC screen = GetDC(window_);
  const HGDIOBJ before = SelectObject(screen, font);
  TEXTMETRICW metrics{};
  GetTextMetricsW(screen, &metrics);
  SelectObject(screen, before);
  ReleaseDC(window_, screen);
  rowHeight_ = metrics.tmHeight + scaled(6);
  widestCharacter_ = 2 * metrics.tmAveCharWidth;
  headerHeight_ = metrics.tmHeight + scaled(8);
  for (const HWND part : {header_, entry_, list_, findLabel_, findField_})
    SendMessageW(part, WM_SETFONT, reinterpret_cast<WPARAM>(font), FALSE);
  show();
}

int GridWindow::columnWidth(int column) const {
  const GridColumn& shown = grid_.columns()[column];
  return shown.visible ? scaled(shown.width) : 0;
}

int GridWindow::columnLeft(int column) const {
  int left = -left_;
  for (int i = 0; i < column; ++i) left += columnWidth(i);
  return left;
}

RECT GridWindow::cellArea(GridCell cell) const {
  const long long rows = static_cast<long long>(cell.row) - grid_.top();
  const int top = headerHeight_ + static_cast<int>(std::clamp(rows, -1LL, 10'000LL)) * rowHeight_;
  const int left = columnLeft(cell.column);
  return {left, top, left + columnWidth(cell.column), top + rowHeight_};
}

RECT GridWindow::buttonArea(const RECT& cell) const {
  if (!grid_.columns()[grid_.current().column].pick) return {};
  const LONG width = std::min<LONG>(scaled(16), (cell.right - cell.left) / 2);
  return {cell.right - width - 1, cell.top + 1, cell.right - 1, cell.bottom - 2};
}

int GridWindow::rowsHeight() const {
  RECT area{};
  GetClientRect(window_, &area);
  return std::max<int>(area.bottom - headerHeight_ - (finding_ ? rowHeight_ + scaled(4) : 0), 0);
}

void GridWindow::show() {
  if (!window_ || showing_) return;
  showing_ = true;
  grid_.setPage(static_cast<GridRow>(rowsHeight() / rowHeight_));
  bringColumnIntoView();
  showScroll();
  layOut();
  showHeader();
  showEntry();
  showList();
  speak();
  showing_ = false;
  InvalidateRect(window_, nullptr, FALSE);
}

void GridWindow::bringColumnIntoView() {
  // Only when the current cell moved: else the view could not be scrolled away from it.
  if (spokenCell_ == grid_.current() && !grid_.editing()) return;
  RECT area{};
  GetClientRect(window_, &area);
  const RECT cell = cellArea(grid_.current());
  if (cell.right > area.right) left_ += cell.right - area.right;
  const int left = columnLeft(grid_.current().column);
  if (left < 0) left_ += left;
}

void GridWindow::showScroll() {
  SCROLLINFO info{};
  info.cbSize = sizeof info;
  info.fMask = SIF_RANGE | SIF_PAGE | SIF_POS;
  info.nMax = static_cast<int>(std::max<GridRow>(grid_.table().rows(), 1)) - 1;
  info.nPage = grid_.page();
  info.nPos = static_cast<int>(grid_.top());
  SetScrollInfo(window_, SB_VERT, &info, TRUE);
  RECT area{};
  GetClientRect(window_, &area);
  const int width = columnLeft(static_cast<int>(grid_.columns().size())) + left_;
  left_ = std::clamp<int>(left_, 0, std::max<int>(width - area.right, 0));
  info.nMax = width - 1;
  info.nPage = static_cast<UINT>(area.right);
  info.nPos = left_;
  SetScrollInfo(window_, SB_HORZ, &info, TRUE);
}

/// What is on the screen already is moved, and the rest alone painted.
void GridWindow::showScrolled(GridRow before) {
  const long long rows = static_cast<long long>(before) - grid_.top();
  if (grid_.editing() || std::abs(rows) >= grid_.page()) return show();
  RECT area{};
  GetClientRect(window_, &area);
  const RECT lines{0, headerHeight_, area.right, headerHeight_ + rowsHeight()};
  ScrollWindowEx(window_, 0, static_cast<int>(rows) * rowHeight_, &lines, &lines, nullptr, nullptr,
                 SW_INVALIDATE);
  showScroll();
}

void GridWindow::layOut() {
  RECT area{};
  GetClientRect(window_, &area);
  SetWindowPos(header_, nullptr, -left_, 0, area.right + left_, headerHeight_,
               SWP_NOZORDER | SWP_NOACTIVATE);
  const int top = headerHeight_ + rowsHeight(), height = area.bottom - top;
  const int label = scaled(70);
  for (const HWND part : {findLabel_, findField_}) ShowWindow(part, finding_ ? SW_SHOWNA : SW_HIDE);
  if (!finding_) return;
  SetWindowPos(findLabel_, nullptr, 0, top, label, height, SWP_NOZORDER | SWP_NOACTIVATE);
  SetWindowPos(findField_, nullptr, label, top, area.right - label, height,
               SWP_NOZORDER | SWP_NOACTIVATE);
}

void GridWindow::showHeader() {
  const int columns = static_cast<int>(grid_.columns().size());
  for (int column = 0; column < columns; ++column) {
    const int sorted = column == grid_.sortedBy() ? HDF_SORTUP : 0;
    const int side = grid_.columns()[column].right ? HDF_RIGHT : HDF_LEFT;
    setParam(header_, column, HDI_WIDTH | HDI_FORMAT, columnWidth(column),
             HDF_STRING | side | sorted);
  }
}

void GridWindow::showEntry() {
  const bool had = GetFocus() == entry_;
  if (!grid_.editing()) {
    if (std::exchange(entryShown_, false)) ShowWindow(entry_, SW_HIDE);
    if (had) SetFocus(window_);
    return;
  }
  const bool begins = !std::exchange(entryShown_, true);
  if (begins) alignEntry(grid_.columns()[grid_.current().column].right);
  const RECT cell = cellArea(grid_.current());
  SetWindowPos(entry_, HWND_TOP, cell.left, cell.top, cell.right - cell.left,
               cell.bottom - cell.top, SWP_NOACTIVATE);
  if (!begins) return;
  const std::wstring text = wide(grid_.text());
  SetWindowTextW(entry_, text.c_str());
  speakAs(entry_, grid_.columns()[grid_.current().column].caption);
  ShowWindow(entry_, SW_SHOW);
  SetFocus(entry_);
  SendMessageW(entry_, EM_SETSEL, text.size(), static_cast<LPARAM>(text.size()));
}

/// Numbers are typed at the edge that they stand at. A field keeps the side that it was made with.
void GridWindow::alignEntry(bool right) {
  if (right == ((GetWindowLongPtrW(entry_, GWL_STYLE) & ES_RIGHT) != 0)) return;
  DestroyWindow(entry_);
  entry_ = makeEntry(right);
  SendMessageW(entry_, WM_SETFONT, reinterpret_cast<WPARAM>(font_), FALSE);
}

void GridWindow::showList() {
  const bool had = GetFocus() == list_;
  if (!grid_.dropped()) {
    if (std::exchange(listShown_, false)) ShowWindow(list_, SW_HIDE);
    if (had) SetFocus(window_);
    return;
  }
  if (!std::exchange(listShown_, true)) {
    SendMessageW(list_, LB_RESETCONTENT, 0, 0);
    for (const std::string& item : grid_.items())
      SendMessageW(list_, LB_ADDSTRING, 0, reinterpret_cast<LPARAM>(wide(item).c_str()));
    speakAs(list_, grid_.columns()[grid_.current().column].caption);
    tips_->set(list_, grid_.columns()[grid_.current().column].tip);
    const RECT cell = cellArea(grid_.current());
    RECT area{};
    GetClientRect(window_, &area);
    const int items = std::min<int>(static_cast<int>(grid_.items().size()), kMostItems);
    const int line = static_cast<int>(SendMessageW(list_, LB_GETITEMHEIGHT, 0, 0));
    const int height = std::min<int>(items * line + 2, area.bottom - headerHeight_);
    const bool below = cell.bottom + height <= area.bottom;
    const int top = below ? cell.bottom : std::max<int>(cell.top - height, headerHeight_);
    SetWindowPos(list_, HWND_TOP, cell.left, top, cell.right - cell.left, height, SWP_SHOWWINDOW);
    SetFocus(list_);
  }
  SendMessageW(list_, LB_SETCURSEL, static_cast<WPARAM>(grid_.marked()), 0);
}

void GridWindow::speak() {
  const GridCell cell = grid_.current();
  std::string words = name_;
  if (grid_.table().rows() == 0) {
    words += ", empty";
  } else {
    words += ", " + grid_.table().cell(cell.row, 0) + ", " + grid_.columns()[cell.column].caption +
             ": " + grid_.table().cell(cell.row, cell.column);
  }
  if (spokenCell_ == cell && spoken_ == words) return;
  spokenCell_ = cell;
  spoken_ = words;
  SetWindowTextW(window_, wide(words).c_str());
  NotifyWinEvent(EVENT_OBJECT_NAMECHANGE, window_, OBJID_CLIENT, CHILDID_SELF);
  if (GetFocus() == window_)
    NotifyWinEvent(EVENT_OBJECT_FOCUS, window_, OBJID_CLIENT, CHILDID_SELF);
}

void GridWindow::openFind() {
  grid_.commit();
  finding_ = true;
  show();
  SetFocus(findField_);
  SendMessageW(findField_, EM_SETSEL, 0, -1);
}

void GridWindow::closeFind() {
  finding_ = false;
  SetFocus(window_);
  show();
}

bool GridWindow::findKey(int keyCode, int shift) {
  switch (keyCode) {
    case VK_ESCAPE:
    case VK_TAB:
      closeFind();
      return true;
    case VK_RETURN:
    case VK_F3:
      findFrom(shift ? Grid::Find::Previous : Grid::Find::Next);
      return true;
    case VK_DOWN:
    case VK_UP:
      findFrom(keyCode == VK_UP ? Grid::Find::Previous : Grid::Find::Next);
      return true;
    default:
      return false;
  }
}

void GridWindow::findFrom(Grid::Find from) {
  const std::string wanted = narrow(windowText(findField_));
  const bool missing = !wanted.empty() && !grid_.find(wanted, from);
  SetWindowTextW(findLabel_, missing ? L" Not found:" : L" Find:");
  show();
}

}  // namespace kelvane::win32
