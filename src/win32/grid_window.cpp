#include "win32/grid_window.h"

#include <commctrl.h>
#include <oleacc.h>
#include <windowsx.h>

#include <algorithm>
#include <exception>
#include <utility>

#include "gui/win32/held_keys.h"
#include "win32/accessible.h"
#include "win32/text.h"

namespace kelvane::win32 {

void GridWindow::registerClass(HINSTANCE instance) {
  WNDCLASSW own{};
  own.style = CS_DBLCLKS;
  own.hInstance = instance;
  own.hCursor = LoadCursorW(nullptr, IDC_ARROW);
  own.lpszClassName = kClass;
  registerWindows(own);
}

GridWindow::GridWindow(HWND window, Grid& grid, std::string name, const ScreenColours& colours)
    : window_(window), grid_(grid), name_(std::move(name)), colours_(colours) {
  keep(window_, this);
  header_ = makePart(Header, WC_HEADERW, HDS_BUTTONS | HDS_HORZ | WS_VISIBLE);
  entry_ = makeEntry(false);
  list_ = makePart(List, WC_LISTBOXW, WS_BORDER | WS_VSCROLL | LBS_NOTIFY | LBS_NOINTEGRALHEIGHT);
  findLabel_ = makePart(FindLabel, WC_STATICW, SS_CENTERIMAGE | SS_NOPREFIX);
  findField_ = makePart(FindField, WC_EDITW, ES_AUTOHSCROLL | WS_BORDER);
  tips_ = std::make_unique<ToolTips>(window_);
  SetWindowTextW(findLabel_, L" Find:");
  giveRole(window_, ROLE_SYSTEM_TABLE);
  speakAs(header_, "Columns");
  speakAs(findField_, "Find");
  for (const GridColumn& column : grid_.columns()) {
    std::wstring caption = wide(column.caption);
    HDITEMW item{};
    item.mask = HDI_TEXT | HDI_FORMAT | HDI_WIDTH;
    item.pszText = caption.data();
    item.fmt = HDF_STRING | (column.right ? HDF_RIGHT : HDF_LEFT);
    SendMessageW(header_, HDM_INSERTITEMW, grid_.columns().size(), reinterpret_cast<LPARAM>(&item));
  }
  show();
}

GridWindow::~GridWindow() {
  if (window_) keep(window_, nullptr);
}

HWND GridWindow::makePart(Part part, const wchar_t* windowClass, DWORD style) {
  const auto instance = reinterpret_cast<HINSTANCE>(GetWindowLongPtrW(window_, GWLP_HINSTANCE));
  const HWND made =
      CreateWindowExW(0, windowClass, L"", WS_CHILD | WS_CLIPSIBLINGS | style, 0, 0, 0, 0, window_,
                      reinterpret_cast<HMENU>(INT_PTR{part}), instance, nullptr);
  watch<&GridWindow::partMessage>(made, this);
  return made;
}

HWND GridWindow::makeEntry(bool right) {
  return makePart(Entry, WC_EDITW, ES_AUTOHSCROLL | WS_BORDER | (right ? ES_RIGHT : ES_LEFT));
}

bool GridWindow::hasFocus() const {
  const HWND focus = GetFocus();
  return window_ && (focus == window_ || IsChild(window_, focus));
}

bool GridWindow::handle(UINT message, WPARAM wParam, LPARAM lParam, LRESULT& result) {
  const POINT at{GET_X_LPARAM(lParam), GET_Y_LPARAM(lParam)};
  switch (message) {
    case WM_PAINT:
      paint();
      return true;
    case WM_ERASEBKGND:
      result = 1;
      return true;
    case WM_SIZE:
      show();
      return true;
    case WM_SETFONT:
      setFont(reinterpret_cast<HFONT>(wParam));
      return true;
    case WM_GETDLGCODE:
      result = DLGC_WANTARROWS | DLGC_WANTCHARS;
      return true;
    case WM_KEYDOWN:
    case WM_SYSKEYDOWN:
      return keyDown(static_cast<int>(wParam), heldKeys());
    case WM_CHAR:
      return typed(wParam);
    case WM_LBUTTONDOWN:
    case WM_LBUTTONDBLCLK:
      return clicked(at, message == WM_LBUTTONDBLCLK);
    case WM_MOUSEWHEEL:
      wheelTurned(GET_WHEEL_DELTA_WPARAM(wParam));
      return true;
    case WM_VSCROLL:
    case WM_HSCROLL:
      return scrolled(message, wParam);
    case WM_COMMAND:
      return commanded(LOWORD(wParam), HIWORD(wParam));
    case WM_NOTIFY:
      return notified(*reinterpret_cast<const NMHDR*>(lParam), result);
    case WM_SETFOCUS:
    case WM_KILLFOCUS:
      spokenCell_.column = -1;
      show();
      return true;
    case WM_NCDESTROY:
      keep(window_, nullptr);
      window_ = nullptr;
      return false;
    default:
      return false;
  }
}

bool GridWindow::keyDown(int keyCode, int shift) {
  if (finding_ && GetFocus() == findField_) return findKey(keyCode, shift);
  if (keyCode == 'F' && shift == 2) {
    openFind();
    return true;
  }
  if (keyCode == VK_F3) {
    findFrom(shift ? Grid::Find::Previous : Grid::Find::Next);
    return true;
  }
  const bool taken = grid_.keyDown(keyCode, shift);
  show();
  return taken;
}

bool GridWindow::typed(WPARAM unit) {
  const auto code = static_cast<wchar_t>(unit);
  if (IS_HIGH_SURROGATE(code)) {
    highSurrogate_ = code;
    return true;
  }
  char32_t character = code;
  if (IS_LOW_SURROGATE(code) && highSurrogate_)
    character = 0x10000 + ((highSurrogate_ - 0xD800) << 10) + (code - 0xDC00);
  highSurrogate_ = 0;
  const bool taken = grid_.keyPress(character);
  show();
  return taken;
}

bool GridWindow::clicked(POINT at, bool twice) {
  const bool had = hasFocus();
  SetFocus(window_);
  if (at.y < headerHeight_ || at.y >= headerHeight_ + rowsHeight()) return true;
  const GridRow row = grid_.top() + static_cast<GridRow>((at.y - headerHeight_) / rowHeight_);
  const int columns = static_cast<int>(grid_.columns().size());
  int column = 0;
  while (column < columns && at.x >= columnLeft(column) + columnWidth(column)) ++column;
  if (column == columns || row >= grid_.table().rows()) {
    grid_.commit();
    show();
    return true;
  }
  const GridCell cell{row, column};
  const bool again = had && cell == grid_.current();
  if (grid_.clicked(cell)) {
    show();
    return true;
  }
  const RECT button = buttonArea(cellArea(cell));
  if (PtInRect(&button, at) || again || twice) grid_.drop() || grid_.begin(Grid::Begin::Keep);
  show();
  return true;
}

void GridWindow::foldList() {
  if (!grid_.dropped()) return;
  grid_.closeList();
  show();
}

void GridWindow::wheelTurned(int delta) {
  wheelRest_ += delta;
  scrollWheel(wheelRest_ / WHEEL_DELTA);
  wheelRest_ %= WHEEL_DELTA;
}

void GridWindow::scrollWheel(int notches) {
  UINT lines = 3;
  SystemParametersInfoW(SPI_GETWHEELSCROLLLINES, 0, &lines, 0);
  const int page = static_cast<int>(grid_.page());
  foldList();
  const GridRow before = grid_.top();
  grid_.scrollBy(-notches * (lines == WHEEL_PAGESCROLL ? page : static_cast<int>(lines)));
  showScrolled(before);
}

bool GridWindow::scrolled(UINT message, WPARAM wParam) {
  const bool down = message == WM_VSCROLL;
  SCROLLINFO info{};
  info.cbSize = sizeof info;
  info.fMask = SIF_ALL;
  GetScrollInfo(window_, down ? SB_VERT : SB_HORZ, &info);
  const int line = down ? 1 : scaled(24), page = static_cast<int>(info.nPage);
  int to = info.nPos;
  switch (LOWORD(wParam)) {
    case SB_LINEUP:
      to -= line;
      break;
    case SB_LINEDOWN:
      to += line;
      break;
    case SB_PAGEUP:
      to -= page;
      break;
    case SB_PAGEDOWN:
      to += page;
      break;
    case SB_THUMBTRACK:
    case SB_THUMBPOSITION:
      to = info.nTrackPos;
      break;
    case SB_TOP:
      to = 0;
      break;
    case SB_BOTTOM:
      to = info.nMax;
      break;
    default:
      break;
  }
  foldList();
  if (down) {
    const GridRow before = grid_.top();
    grid_.scrollTo(static_cast<GridRow>(std::max(to, 0)));
    showScrolled(before);
    return true;
  }
  left_ = std::clamp(to, 0, std::max(info.nMax + 1 - page, 0));
  show();
  return true;
}

bool GridWindow::commanded(int part, int notice) {
  if (showing_) return true;
  if (part == Entry && notice == EN_CHANGE) {
    const std::string before = narrow(windowText(entry_));
    const std::string& kept = grid_.edited(before);
    if (kept != before) {
      DWORD caret = 0;
      SendMessageW(entry_, EM_GETSEL, 0, reinterpret_cast<LPARAM>(&caret));
      SetWindowTextW(entry_, wide(kept).c_str());
      SendMessageW(entry_, EM_SETSEL, caret, static_cast<LPARAM>(caret));
    }
  }
  if (part == FindField && notice == EN_CHANGE) findFrom(Grid::Find::AtCurrent);
  if ((part == Entry && notice == EN_KILLFOCUS) || (part == List && notice == LBN_KILLFOCUS)) {
    grid_.commit();
    show();
  }
  return true;
}

bool GridWindow::notified(const NMHDR& notice, LRESULT& result) {
  const auto& header = reinterpret_cast<const NMHEADERW&>(notice);
  if (showing_ || notice.idFrom != Header) return false;
  switch (notice.code) {
    case HDN_BEGINTRACKW:
    case HDN_DIVIDERDBLCLICKW:
      result = !grid_.columns()[header.iItem].visible;
      return true;
    case HDN_ITEMCHANGEDW:
      if (header.pitem && (header.pitem->mask & HDI_WIDTH)) {
        grid_.setWidth(header.iItem, MulDiv(header.pitem->cxy, 96, scaled(96)));
        show();
      }
      return true;
    case HDN_ITEMCLICKW:
      grid_.headerClicked(header.iItem);
      show();
      return true;
    default:
      return false;
  }
}

bool GridWindow::partMessage(HWND part, UINT message, WPARAM wParam, LPARAM lParam,
                             LRESULT& result) {
  if (message == WM_MOUSEWHEEL && part != list_) {
    SendMessageW(window_, message, wParam, lParam);
    return true;
  }
  if (message == WM_GETDLGCODE && (part == entry_ || part == list_ || part == findField_)) {
    result = DLGC_WANTARROWS | DLGC_WANTCHARS;
    return true;
  }
  if (part != entry_ && part != list_) return false;
  const auto code = static_cast<wchar_t>(wParam);
  if (message == WM_CHAR && !IS_SURROGATE_PAIR(code, code) && !IS_HIGH_SURROGATE(code) &&
      !IS_LOW_SURROGATE(code)) {
    const bool taken = grid_.keyPress(code);
    show();
    return taken;
  }
  if (part == list_ && (message == WM_LBUTTONDOWN || message == WM_LBUTTONDBLCLK)) {
    listPressed_ = true;
    return false;
  }
  if (part == list_ && message == WM_LBUTTONUP) {
    // The button may come up from the press that opened the list.
    if (!std::exchange(listPressed_, false)) return true;
    const LRESULT item = SendMessageW(list_, LB_ITEMFROMPOINT, 0, lParam);
    if (GetCapture() == list_) ReleaseCapture();
    if (HIWORD(item) == 0) grid_.choose(LOWORD(item));
    show();
    return true;
  }
  return false;
}

}  // namespace kelvane::win32
