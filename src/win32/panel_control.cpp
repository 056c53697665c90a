#include "win32/panel_control.h"

#include <commctrl.h>
#include <windowsx.h>

#include <utility>

#include "gui/win32/held_keys.h"
#include "win32/accessible.h"
#include "win32/text.h"

namespace kelvane::win32 {

namespace {

constexpr wchar_t kDigitClass[] = L"KelvaneDigit";
constexpr wchar_t kKeysClass[] = L"KelvaneKeys";

struct Make {
  const wchar_t* windowClass;
  DWORD style;
};

Make makeOf(Kind kind) {
  switch (kind) {
    case Kind::Digit:
      return {kDigitClass, 0};
    case Kind::Keys:
      return {kKeysClass, 0};
    case Kind::Toggle:
      return {L"BUTTON", BS_CHECKBOX | BS_PUSHLIKE};
    case Kind::Button:
      return {L"BUTTON", BS_PUSHBUTTON};
    case Kind::Panel:
      return {L"STATIC", WS_CLIPSIBLINGS};
    default:
      return {L"STATIC", SS_NOTIFY | SS_NOPREFIX};
  }
}

bool takesKeys(Kind kind) { return kind == Kind::Digit || kind == Kind::Keys; }

bool isButton(Kind kind) { return kind == Kind::Toggle || kind == Kind::Button; }

}  // namespace

void registerPanelControls(HINSTANCE instance) {
  for (const wchar_t* name : {kDigitClass, kKeysClass}) {
    WNDCLASSW own{};
    own.lpfnWndProc = DefWindowProcW;
    own.hInstance = instance;
    own.hCursor = LoadCursorW(nullptr, IDC_ARROW);
    own.lpszClassName = name;
    RegisterClassW(&own);
  }
}

PanelControl::PanelControl(HWND parent, const ControlRow& row, int element, ControlEvents& events,
                           UINT dpi)
    : row_(row), element_(element), events_(events), dpi_(dpi) {
  const Make make = makeOf(row.kind);
  const RECT at = area();
  window_ = CreateWindowExW(0, make.windowClass, L"", WS_CHILD | WS_VISIBLE | make.style, at.left,
                            at.top, at.right - at.left, at.bottom - at.top, parent,
                            reinterpret_cast<HMENU>(static_cast<INT_PTR>(id())),
                            GetModuleHandleW(nullptr), nullptr);
  takeOver(window_, this);
  if (row.kind == Kind::Panel)
    SetWindowPos(window_, HWND_BOTTOM, 0, 0, 0, 0, SWP_NOMOVE | SWP_NOSIZE | SWP_NOACTIVATE);
}

RECT PanelControl::area() const {
  const Place& at = row_.place;
  const int gap = row_.kind == Kind::Digit ? element_ / 3 * kDigitGroupGap : 0;
  const int left = at.left + element_ * row_.step + gap;
  const int width = shown_.width > 0 ? shown_.width : at.width;
  return {scaled(left, dpi_), scaled(at.top, dpi_), scaled(left + width, dpi_),
          scaled(at.top, dpi_) + scaled(at.height, dpi_)};
}

void PanelControl::speak() {
  if (!std::exchange(speaks_, true)) {
    giveRole(window_, row_.kind);
    if (row_.kind == Kind::Said) makeAnnounced(window_);
  }
  stale_ = false;
  speakAs(window_, spokenWords(row_, element_, shown_));
  if (row_.kind == Kind::Said && !shown_.text.empty()) announce(window_);
}

void PanelControl::repaint() const {
  if (IsWindowVisible(window_)) InvalidateRect(window_, nullptr, FALSE);
}

void PanelControl::show(const Control& control) {
  if (control == shown_) return;
  const Control before = std::exchange(shown_, control);
  if (control.text != before.text) SetWindowTextW(window_, wide(control.text).c_str());
  if (control.width != before.width) takePlace();
  if (control.enabled != before.enabled) EnableWindow(window_, control.enabled);
  if (row_.kind == Kind::Toggle && control.pressed != before.pressed)
    SendMessageW(window_, BM_SETCHECK, control.pressed ? BST_CHECKED : BST_UNCHECKED, 0);
  if (control.text != before.text || control.spoken != before.spoken) stale_ = speaks_;
  if (stale_ && row_.kind == Kind::Said) speak();
  if (control.visible != before.visible) ShowWindow(window_, control.visible ? SW_SHOWNA : SW_HIDE);
  if (!control.visible || !control.enabled) dropPress();
  repaint();
}

void PanelControl::place(UINT dpi, const Fonts& fonts, const Palette& palette) {
  palette_ = &palette;
  font_ = fonts[row_.font];
  SendMessageW(window_, WM_SETFONT, reinterpret_cast<WPARAM>(font_), FALSE);
  if (std::exchange(dpi_, dpi) != dpi) takePlace();
  repaint();
}

void PanelControl::takePlace() const {
  const RECT at = area();
  SetWindowPos(window_, nullptr, at.left, at.top, at.right - at.left, at.bottom - at.top,
               SWP_NOACTIVATE | SWP_NOZORDER);
}

bool PanelControl::handle(UINT message, WPARAM wParam, LPARAM lParam, LRESULT& result) {
  switch (message) {
    case WM_PAINT:
      paint();
      return true;
    case WM_SETTEXT:
      // The system's controls would paint the text at once, in their own way.
      result = DefWindowProcW(window_, message, wParam, lParam);
      return true;
    case WM_GETOBJECT:
      // Asked by a screen reader: a name that follows a meter is told no sooner.
      if (stale_) speak();
      return false;
    case WM_ENABLE:
      InvalidateRect(window_, nullptr, FALSE);
      return true;
    case WM_ERASEBKGND:
      result = 1;
      return true;
    case WM_SETFOCUS:
      InvalidateRect(window_, nullptr, FALSE);
      events_.gotFocus(id());
      return false;
    case WM_KILLFOCUS:
      InvalidateRect(window_, nullptr, FALSE);
      events_.lostFocus(id());
      return false;
    case WM_GETDLGCODE:
      result = DLGC_WANTALLKEYS;
      return takesKeys(row_.kind);
    case WM_KEYDOWN:
    case WM_SYSKEYDOWN:
      if (takesKeys(row_.kind)) events_.keyDown(id(), static_cast<int>(wParam), heldKeys());
      // Space is a command of the keyboard language; the system's button would be pressed as well.
      return isButton(row_.kind) && wParam == VK_SPACE;
    case WM_CHAR:
      if (takesKeys(row_.kind)) events_.keyPress(id(), static_cast<int>(wParam));
      return takesKeys(row_.kind);
    case WM_CAPTURECHANGED:
      dropPress();
      return false;
    case BM_GETSTATE:
      if (!handPressed()) return false;
      result = ownAnswer(window_, message, wParam, lParam) | BST_PUSHED;
      return true;
    default:
      return mouse(message, lParam);
  }
}

// The system's own buttons would take the keyboard with a press, and lose the second of two quick
// clicks on a box that is not released yet.
bool PanelControl::mouse(UINT message, LPARAM lParam) {
  const auto over = [&] {
    const POINT at{GET_X_LPARAM(lParam), GET_Y_LPARAM(lParam)};
    RECT area;
    GetClientRect(window_, &area);
    return PtInRect(&area, at) != 0;
  };
  switch (message) {
    case WM_LBUTTONDOWN:
    case WM_LBUTTONDBLCLK:
      pressed(MouseButton::Left);
      return true;
    case WM_RBUTTONDOWN:
    case WM_RBUTTONDBLCLK:
      pressed(MouseButton::Right);
      return true;
    case WM_MBUTTONDOWN:
    case WM_MBUTTONDBLCLK:
      pressed(MouseButton::Middle);
      return true;
    case WM_LBUTTONUP:
      released(MouseButton::Left, over());
      return true;
    case WM_RBUTTONUP:
      released(MouseButton::Right, over());
      return true;
    case WM_MBUTTONUP:
      released(MouseButton::Middle, over());
      return true;
    case WM_MOUSEMOVE:
      if (press_.held() && handPressed() != over()) {
        press_.moved(over());
        repaint();
      }
      return false;
    default:
      return false;
  }
}

void PanelControl::pressed(MouseButton button) {
  // A digit is chosen by the press itself.
  if (row_.kind == Kind::Digit && button == MouseButton::Left) SetFocus(window_);
  const bool answers = isButton(row_.kind) ? button == MouseButton::Left : !takesKeys(row_.kind);
  if (!answers || !IsWindowEnabled(window_)) return;
  press_.down(button);
  SetCapture(window_);
  repaint();
}

void PanelControl::released(MouseButton button, bool over) {
  const bool acts = press_.up(button, over);
  // The capture goes with the press; that it went drops nothing else.
  if (!press_.held() && GetCapture() == window_) ReleaseCapture();
  repaint();
  if (acts) events_.clicked(id(), button);
}

void PanelControl::dropPress() {
  if (!press_.held()) return;
  press_.cancel();
  if (GetCapture() == window_) ReleaseCapture();
  repaint();
}

void PanelControl::paint() const { paintPanelControl(*this); }

}  // namespace kelvane::win32
