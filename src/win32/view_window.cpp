#include "win32/view_window.h"

#include <algorithm>
#include <array>
#include <utility>

#include "base/text.h"
#include "gui/win32/accessible.h"
#include "gui/win32/held_keys.h"
#include "gui/win32/text_size.h"
#include "ui/alt_letters.h"
#include "ui/key_codes.h"
#include "win32/paint.h"
#include "win32/screens.h"
#include "win32/text.h"

namespace kelvane::win32 {

namespace {

constexpr DWORD kViewStyle =
    WS_OVERLAPPED | WS_CAPTION | WS_SYSMENU | WS_MINIMIZEBOX | WS_THICKFRAME | WS_CLIPCHILDREN;
constexpr UINT_PTR kRefreshTimer = 1;
constexpr UINT kRefreshTime = 50;

HINSTANCE program() { return GetModuleHandleW(nullptr); }

}  // namespace

bool canBeSeen(HWND window) {
  RECT area{};
  if (!IsWindowVisible(window) || IsIconic(window) || !GetWindowRect(window, &area)) return false;
  constexpr std::array kShares{50, 4, 96, 27, 73};
  for (const int down : kShares) {
    for (const int across : kShares) {
      const POINT at{area.left + MulDiv(area.right - area.left, across, 100),
                     area.top + MulDiv(area.bottom - area.top, down, 100)};
      const HWND there = WindowFromPoint(at);
      if (there && GetAncestor(there, GA_ROOT) == window) return true;
    }
  }
  return false;
}

ViewWindow::ViewWindow(HWND owner, Design design, std::function<ColourChoice()> colours)
    : design_(std::move(design)),
      owner_(owner),
      choice_(std::move(colours)),
      palette_(&paletteNow(choice_())) {
  WNDCLASSW own{};
  own.hInstance = program();
  own.hIcon = LoadIconW(program(), MAKEINTRESOURCEW(1));
  own.hCursor = LoadCursorW(nullptr, IDC_ARROW);
  own.lpszClassName = design_.windowClass;
  registerWindows(own);
  window_ = CreateWindowExW(0, design_.windowClass, wide(design_.title).c_str(), kViewStyle, 0, 0,
                            0, 0, owner_, nullptr, program(), nullptr);
  keep(window_, this);
  dpi_ = layoutResolution(window_, GetDpiForWindow(window_), design_.width, design_.height);
  fonts_ = std::make_unique<Fonts>(dpi_);
  tips_ = std::make_unique<ToolTips>(window_);
}

ViewWindow::~ViewWindow() { endWindow(window_); }

void ViewWindow::present(Keys keys) {
  if (!placed_) restorePlace();
  if (IsIconic(window_)) ShowWindow(window_, SW_RESTORE);
  ShowWindow(window_, keys == Keys::Take ? SW_SHOW : SW_SHOWNOACTIVATE);
  SetTimer(window_, kRefreshTimer, kRefreshTime, nullptr);
  refresh();
  if (keys == Keys::Leave) return;
  SetForegroundWindow(window_);
  SetFocus(startOfKeys());
}

SIZE ViewWindow::frameSize(int width, int height) const {
  RECT area{0, 0, scaled(width, dpi_), scaled(height, dpi_)};
  AdjustWindowRectExForDpi(&area, kViewStyle, FALSE, 0, GetDpiForWindow(window_));
  return {area.right - area.left, area.bottom - area.top};
}

/// Where it was; at first below the main window, as far as there is room.
void ViewWindow::restorePlace() {
  placed_ = true;
  const auto system = static_cast<int>(GetDpiForSystem());
  RECT over{};
  GetWindowRect(owner_, &over);
  const Frame start = startFrame(
      {Global::twipsFromPixels(over.left, system), Global::twipsFromPixels(over.bottom, system)});
  const SIZE least = frameSize(design_.leastWidth, design_.leastHeight);
  SIZE size = frameSize(design_.width, design_.height);
  if (start.width > 0 && start.height > 0)
    size = {std::max<LONG>(least.cx, Global::pixelsFromTwips(start.width, system)),
            std::max<LONG>(least.cy, Global::pixelsFromTwips(start.height, system))};
  const Global::Point at = Global::placeOnScreen(
      {Global::pixelsFromTwips(start.at.left, system),
       Global::pixelsFromTwips(start.at.top, system)},
      {static_cast<std::int32_t>(size.cx), static_cast<std::int32_t>(size.cy)},
      GetSystemMetrics(SM_CYCAPTION), screens());
  SetWindowPos(window_, nullptr, at.left, at.top, size.cx, size.cy, SWP_NOZORDER | SWP_NOACTIVATE);
  layOutAll();
}

void ViewWindow::keepPlace() {
  RECT at{};
  if (!placed_ || IsIconic(window_) || !GetWindowRect(window_, &at)) return;
  const auto twips = [system = static_cast<int>(GetDpiForSystem())](LONG pixels) {
    return Global::twipsFromPixels(pixels, system);
  };
  leftAt({{twips(at.left), twips(at.top)}, twips(at.right - at.left), twips(at.bottom - at.top)});
}

HWND ViewWindow::addButton(int id, std::string_view text, std::string_view tip) {
  const HWND button = CreateWindowExW(
      0, L"BUTTON", wide(text).c_str(), WS_CHILD | WS_VISIBLE | WS_TABSTOP | BS_OWNERDRAW, 0, 0, 0,
      0, window_, reinterpret_cast<HMENU>(static_cast<INT_PTR>(id)), program(), nullptr);
  watch<&ViewWindow::buttonMessage>(button, this);
  tips_->set(button, std::string(tip));
  buttons_[id] = {button, std::string(text), {}, true};
  return button;
}

void ViewWindow::setButton(int id, const std::string& text) {
  Button& button = buttons_[id];
  if (button.text == text) return;
  button.text = text;
  SetWindowTextW(button.window, wide(text).c_str());
  InvalidateRect(button.window, nullptr, FALSE);
}

void ViewWindow::setToggle(int id, const std::string& text, bool on) {
  Button& button = buttons_[id];
  if (button.text == text && button.on == on) return;
  setButton(id, text);
  button.on = on;
  speakAs(button.window, spokenCaption(text) + (on ? ", on" : ", off"));
  InvalidateRect(button.window, nullptr, FALSE);
}

void ViewWindow::setEnabled(int id, bool enabled) {
  Button& button = buttons_[id];
  if (std::exchange(button.enabled, enabled) != enabled) EnableWindow(button.window, enabled);
}

void ViewWindow::place(int id, int left, int top, int width, int height) const {
  SetWindowPos(item(id), nullptr, left, top, width, height, SWP_NOZORDER | SWP_NOACTIVATE);
  InvalidateRect(item(id), nullptr, FALSE);
}

int ViewWindow::widthOf(std::string_view text, HFONT font) const {
  HDC screen = GetDC(window_);
  const HGDIOBJ before = SelectObject(screen, font);
  const std::wstring words = wide(text);
  SIZE size{};
  GetTextExtentPoint32W(screen, words.data(), static_cast<int>(words.size()), &size);
  SelectObject(screen, before);
  ReleaseDC(window_, screen);
  return static_cast<int>(size.cx);
}

void ViewWindow::setOnTop(bool onTop) const {
  SetWindowPos(window_, onTop ? HWND_TOPMOST : HWND_NOTOPMOST, 0, 0, 0, 0,
               SWP_NOMOVE | SWP_NOSIZE | SWP_NOACTIVATE);
}

void ViewWindow::needHeight(int height) {
  design_.height = design_.leastHeight = height;
  RECT now{};
  if (!placed_ || !GetWindowRect(window_, &now)) return;
  const SIZE least = frameSize(design_.leastWidth, height);
  if (now.bottom - now.top < least.cy)
    SetWindowPos(window_, nullptr, 0, 0, now.right - now.left, least.cy,
                 SWP_NOMOVE | SWP_NOZORDER | SWP_NOACTIVATE);
}

void ViewWindow::paintItem(const DRAWITEMSTRUCT& draw) const {
  if (draw.CtlType == ODT_BUTTON) return paintButton(draw);
  RECT area = draw.rcItem;
  SetDCBrushColor(draw.hDC, resolved(colours().window));
  FillRect(draw.hDC, &area, static_cast<HBRUSH>(GetStockObject(DC_BRUSH)));
  SetBkMode(draw.hDC, TRANSPARENT);
  SetTextColor(draw.hDC, resolved(colours().text));
  const HGDIOBJ before = SelectObject(draw.hDC, font(Font::Normal));
  DrawTextW(draw.hDC, windowText(draw.hwndItem).c_str(), -1, &area, DT_NOPREFIX | DT_END_ELLIPSIS);
  SelectObject(draw.hDC, before);
}

void ViewWindow::paintButton(const DRAWITEMSTRUCT& draw) const {
  const Colours& c = colours();
  const auto button = buttons_.find(static_cast<int>(draw.CtlID));
  const bool on = button != buttons_.end() && button->second.on.value_or(false);
  const bool down = (draw.itemState & ODS_SELECTED) != 0 || on;
  const HDC dc = draw.hDC;
  RECT area = draw.rcItem;
  const auto fill = [dc](const RECT& rect, COLORREF colour) {
    SetDCBrushColor(dc, colour);
    FillRect(dc, &rect, static_cast<HBRUSH>(GetStockObject(DC_BRUSH)));
  };
  fill(area, resolved(c.window));
  const bool focused = (draw.itemState & ODS_FOCUS) != 0;
  const bool disabled = (draw.itemState & ODS_DISABLED) != 0;
  SetDCBrushColor(dc, resolved(disabled ? c.window : down ? c.pressed : c.button));
  SetDCPenColor(dc, resolved(focused ? c.focus : c.line));
  const HGDIOBJ brush = SelectObject(dc, GetStockObject(DC_BRUSH));
  const HGDIOBJ pen = SelectObject(dc, GetStockObject(DC_PEN));
  RoundRect(dc, area.left, area.top, area.right, area.bottom, px(6), px(6));
  SelectObject(dc, GetStockObject(NULL_BRUSH));
  if (focused)
    RoundRect(dc, area.left + 1, area.top + 1, area.right - 1, area.bottom - 1, px(5), px(5));
  SelectObject(dc, pen);
  SelectObject(dc, brush);
  // What is on has a line as well: its ground alone would say so by colour.
  if (on)
    fill({area.left + px(8), area.bottom - px(5), area.right - px(8), area.bottom - px(3)},
         resolved(palette().contrast ? c.onSelection : c.accent));
  SetBkMode(dc, TRANSPARENT);
  const Colour ink = disabled                     ? palette().contrast ? c.faint : c.quiet
                     : palette().contrast && down ? c.onSelection
                                                  : c.text;
  SetTextColor(dc, resolved(ink));
  const HGDIOBJ before = SelectObject(dc, font(Font::Normal));
  DrawTextW(dc, windowText(draw.hwndItem).c_str(), -1, &area,
            DT_CENTER | DT_VCENTER | DT_SINGLELINE | DT_HIDEPREFIX | DT_END_ELLIPSIS);
  SelectObject(dc, before);
}

bool ViewWindow::accelerator(char32_t character) {
  const char32_t letter = lowerCase(character);
  for (HWND part = GetWindow(window_, GW_CHILD); part; part = GetWindow(part, GW_HWNDNEXT)) {
    if (letter == 0 || markedLetter(narrow(windowText(part))) != letter) continue;
    wchar_t name[8] = L"";
    GetClassNameW(part, name, 8);
    if (lstrcmpiW(name, L"BUTTON") != 0 || !IsWindowEnabled(part)) continue;
    command(GetDlgCtrlID(part));
    return true;
  }
  return false;
}

bool ViewWindow::partMessage(UINT message, WPARAM wParam) {
  const auto code = static_cast<int>(wParam);
  switch (message) {
    case WM_KEYDOWN:
      if (code == VK_TAB) {
        SetFocus(GetNextDlgTabItem(window_, GetFocus(), (heldKeys() & key::ShiftHeld) != 0));
        return true;
      }
      return keyDown(code, heldKeys());
    case WM_SYSKEYDOWN:
      return keyDown(code, heldKeys());
    case WM_CHAR:
      if (code == VK_TAB) return true;
      if (keyPress(code)) return true;
      if (code == VK_ESCAPE) PostMessageW(window_, WM_CLOSE, 0, 0);
      return false;
    case WM_SYSCHAR:
      return accelerator(static_cast<char32_t>(wParam));
    default:
      return false;
  }
}

bool ViewWindow::buttonMessage(HWND button, UINT message, WPARAM wParam, LPARAM, LRESULT& result) {
  if (message == WM_KEYDOWN && wParam == VK_RETURN) {
    command(GetDlgCtrlID(button));
    return true;
  }
  const bool ofButton =
      (message == WM_KEYDOWN || message == WM_CHAR) && (wParam == VK_SPACE || wParam == VK_RETURN);
  if (!ofButton && partMessage(message, wParam)) return true;
  if (message != WM_ERASEBKGND) return false;
  result = 1;
  return true;
}

void ViewWindow::changeLook() {
  palette_ = &paletteNow(choice_());
  dpi_ = layoutResolution(window_, GetDpiForWindow(window_), design_.width, design_.height);
  fonts_ = std::make_unique<Fonts>(dpi_);
  lookChanged();
  layOutAll();
  RedrawWindow(window_, nullptr, nullptr, RDW_INVALIDATE | RDW_ALLCHILDREN);
}

void ViewWindow::layOutAll() {
  RECT area{};
  GetClientRect(window_, &area);
  if (fonts_ && area.right > 0) layOut(area.right, area.bottom);
  InvalidateRect(window_, nullptr, FALSE);
}

bool ViewWindow::handle(UINT message, WPARAM wParam, LPARAM lParam, LRESULT& result) {
  switch (message) {
    case WM_TIMER:
      if (wParam != kRefreshTimer || !canBeSeen(window_)) return true;
      if (&paletteNow(choice_()) != palette_) changeLook();
      refresh();
      return true;
    case WM_PAINT:
      paint(window_);
      return true;
    case WM_ERASEBKGND:
      result = 1;
      return true;
    case WM_SIZE:
      if (wParam != SIZE_MINIMIZED) layOutAll();
      return true;
    case WM_GETMINMAXINFO: {
      if (!fonts_) return false;
      const SIZE least = frameSize(design_.leastWidth, design_.leastHeight);
      reinterpret_cast<MINMAXINFO*>(lParam)->ptMinTrackSize = {least.cx, least.cy};
      return true;
    }
    case WM_SETFOCUS:
      SetFocus(startOfKeys());
      return true;
    case WM_COMMAND:
      if (HIWORD(wParam) == BN_CLICKED && lParam) command(LOWORD(wParam));
      return true;
    case WM_DRAWITEM:
      paintItem(*reinterpret_cast<const DRAWITEMSTRUCT*>(lParam));
      result = TRUE;
      return true;
    case WM_DPICHANGED: {
      const RECT& to = *reinterpret_cast<const RECT*>(lParam);
      SetWindowPos(window_, nullptr, to.left, to.top, to.right - to.left, to.bottom - to.top,
                   SWP_NOZORDER | SWP_NOACTIVATE);
      changeLook();
      return true;
    }
    case WM_SETTINGCHANGE:
    case WM_SYSCOLORCHANGE:
      changeLook();
      return false;
    case WM_CLOSE:
      keepPlace();
      KillTimer(window_, kRefreshTimer);
      ShowWindow(window_, SW_HIDE);
      SetForegroundWindow(owner_);
      return true;
    case WM_DESTROY:
      if (IsWindowVisible(window_)) keepPlace();
      return false;
    case WM_NCDESTROY:
      keep(window_, nullptr);
      window_ = nullptr;
      return false;
    default:
      return false;
  }
}

}  // namespace kelvane::win32
