#include "base/win32/dialog_window.h"

#include <algorithm>
#include <exception>
#include <string_view>
#include <utility>

#include "base/win32/utf16.h"

// The module that this code is linked into, a program's or a component's.
extern "C" IMAGE_DOS_HEADER __ImageBase;

namespace kelvane::win32 {

namespace {

constexpr DWORD kStyle = WS_POPUP | WS_CAPTION | WS_SYSMENU;
constexpr DWORD kExtended = WS_EX_CONTROLPARENT | WS_EX_DLGMODALFRAME;
constexpr wchar_t kSelf[] = L"KelvaneDialog";

HINSTANCE module() { return reinterpret_cast<HINSTANCE>(&__ImageBase); }

DialogWindow* dialogOf(HWND window) {
  return reinterpret_cast<DialogWindow*>(GetPropW(window, kSelf));
}

HFONT messageFont(UINT dpi) {
  NONCLIENTMETRICSW metrics{};
  metrics.cbSize = sizeof metrics;
  SystemParametersInfoForDpi(SPI_GETNONCLIENTMETRICS, sizeof metrics, &metrics, 0, dpi);
  return CreateFontIndirectW(&metrics.lfMessageFont);
}

int heldKeys() {
  const auto down = [](int key) { return GetKeyState(key) < 0; };
  return (down(VK_SHIFT) ? 1 : 0) | (down(VK_CONTROL) ? 2 : 0) | (down(VK_MENU) ? 4 : 0);
}

/// What a control needs besides its style.
DWORD extended(const DialogItem& item) {
  const std::wstring_view type(item.windowClass);
  if (type == WC_EDITW || type == WC_LISTVIEWW) return WS_EX_CLIENTEDGE;
  // A frame paints no inside: what lies beneath it has to show there.
  if (type == WC_BUTTONW && (item.style & BS_TYPEMASK) == BS_GROUPBOX) return WS_EX_TRANSPARENT;
  return 0;
}

bool isKey(UINT message) { return message >= WM_KEYFIRST && message <= WM_KEYLAST; }

}  // namespace

DialogWindow::DialogWindow(const Frame& frame)
    : owner_(frame.owner),
      width_(frame.width),
      height_(frame.height),
      className_(frame.windowClass) {
  const INITCOMMONCONTROLSEX controls{sizeof controls, ICC_TAB_CLASSES | ICC_LISTVIEW_CLASSES |
                                                           ICC_UPDOWN_CLASS | ICC_STANDARD_CLASSES};
  InitCommonControlsEx(&controls);
  WNDCLASSW own{};
  own.lpfnWndProc = procedure;
  own.hInstance = module();
  own.hCursor = LoadCursorW(nullptr, IDC_ARROW);
  own.hbrBackground = reinterpret_cast<HBRUSH>(COLOR_BTNFACE + 1);
  own.hIcon = LoadIconW(GetModuleHandleW(nullptr), MAKEINTRESOURCEW(1));  // the program's
  own.lpszClassName = className_;
  RegisterClassW(&own);  // fails where another dialog of the class is open
  RECT over{};
  if (owner_) GetWindowRect(owner_, &over);
  const bool topmost = owner_ && (GetWindowLongW(owner_, GWL_EXSTYLE) & WS_EX_TOPMOST);
  window_ = CreateWindowExW(kExtended | (topmost ? WS_EX_TOPMOST : 0), className_,
                            wide(frame.caption).c_str(), kStyle, over.left, over.top, 0, 0, owner_,
                            nullptr, module(), nullptr);
  SetPropW(window_, kSelf, this);
  tips_ = std::make_unique<ToolTips>(window_);
  dpi_ = GetDpiForWindow(window_);
  font_ = messageFont(dpi_);
}

DialogWindow::~DialogWindow() {
  // What a class of dialogs adds is gone by now: nothing may be told to it any more.
  if (window_) {
    RemovePropW(window_, kSelf);
    DestroyWindow(window_);
  }
  if (hook_) UnhookWindowsHookEx(hook_);
  DeleteObject(font_);
  // The class would outlive the module that holds its procedure; fails while another one uses it.
  UnregisterClassW(className_, module());
}

HWND DialogWindow::add(const DialogItem& item) {
  const HWND control =
      CreateWindowExW(extended(item), item.windowClass, wide(item.text).c_str(),
                      WS_CHILD | WS_VISIBLE | item.style, 0, 0, 0, 0, window_,
                      reinterpret_cast<HMENU>(static_cast<INT_PTR>(item.id)), module(), nullptr);
  controls_.push_back({control, item.area});
  if (!item.tip.empty()) tips_->set(control, item.tip);
  return control;
}

std::string DialogWindow::text(int id) const {
  const HWND control = item(id);
  std::wstring text(static_cast<std::size_t>(GetWindowTextLengthW(control)), L'\0');
  text.resize(static_cast<std::size_t>(
      GetWindowTextW(control, text.data(), static_cast<int>(text.size()) + 1)));
  return narrow(text);
}

void DialogWindow::setText(int id, const std::string& text) {
  if (this->text(id) != text) SetDlgItemTextW(window_, id, wide(text).c_str());
}

bool DialogWindow::checked(int id) const { return IsDlgButtonChecked(window_, id) == BST_CHECKED; }

void DialogWindow::check(int id, bool on) {
  if (checked(id) != on) CheckDlgButton(window_, id, on ? BST_CHECKED : BST_UNCHECKED);
}

void DialogWindow::enable(int id, bool on) {
  const HWND control = item(id);
  if ((IsWindowEnabled(control) != 0) == on) return;
  // A control that is disabled while it has the focus would keep the keyboard to itself.
  if (!on && GetFocus() == control) SendMessageW(window_, WM_NEXTDLGCTL, 0, FALSE);
  EnableWindow(control, on);
}

bool DialogWindow::notified(const NMHDR&, LRESULT&) { return false; }
bool DialogWindow::keyDown(int, int) { return false; }
bool DialogWindow::accelerator(wchar_t) { return false; }
bool DialogWindow::wheel(int) { return false; }
HBRUSH DialogWindow::ground(int) const { return nullptr; }

void DialogWindow::runModal() {
  placeOverOwner();
  ownerDisabled_ = owner_ && !EnableWindow(owner_, FALSE);
  ShowWindow(window_, SW_SHOW);
  MSG message{};
  while (window_ && IsWindowVisible(window_)) {
    const BOOL got = GetMessageW(&message, nullptr, 0, 0);
    if (got <= 0) {
      if (got == 0) PostQuitMessage(static_cast<int>(message.wParam));
      break;
    }
    if (takes(message)) continue;
    TranslateMessage(&message);
    DispatchMessageW(&message);
  }
  close();
}

void DialogWindow::showModeless() {
  if (!window_) return;
  if (!IsWindowVisible(window_)) placeOverOwner();
  if (!hook_) hook_ = SetWindowsHookExW(WH_GETMESSAGE, previewKeys, nullptr, GetCurrentThreadId());
  ShowWindow(window_, SW_SHOW);
  SetForegroundWindow(window_);
}

void DialogWindow::close() {
  if (!window_) return;
  // Before the dialog goes: the system would else give the focus to another program's window.
  if (std::exchange(ownerDisabled_, false)) EnableWindow(owner_, TRUE);
  if (GetActiveWindow() == window_ && owner_ && IsWindowEnabled(owner_)) SetActiveWindow(owner_);
  DestroyWindow(window_);
}

void DialogWindow::gone() {
  RemovePropW(window_, kSelf);
  window_ = nullptr;
  controls_.clear();
  if (hook_) UnhookWindowsHookEx(std::exchange(hook_, nullptr));
  if (std::exchange(ownerDisabled_, false)) EnableWindow(owner_, TRUE);
}

bool DialogWindow::takes(MSG& message) {
  if (!window_ || (message.hwnd != window_ && !IsChild(window_, message.hwnd))) return false;
  if ((message.message == WM_KEYDOWN || message.message == WM_SYSKEYDOWN) &&
      keyDown(static_cast<int>(message.wParam), heldKeys()))
    return true;
  if (message.message == WM_SYSCHAR && accelerator(static_cast<wchar_t>(message.wParam)))
    return true;
  return window_ && IsDialogMessageW(window_, &message);
}

// A program's own message loop knows nothing of a component's dialog and its keys.
LRESULT CALLBACK DialogWindow::previewKeys(int code, WPARAM wParam, LPARAM lParam) {
  auto* message = reinterpret_cast<MSG*>(lParam);
  if (code == HC_ACTION && wParam == PM_REMOVE && isKey(message->message)) {
    DialogWindow* dialog = dialogOf(GetAncestor(message->hwnd, GA_ROOT));
    if (dialog && dialog->hook_ && dialog->takes(*message)) message->message = WM_NULL;
  }
  return CallNextHookEx(nullptr, code, wParam, lParam);
}

LRESULT CALLBACK DialogWindow::procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
  DialogWindow* self = dialogOf(window);
  LRESULT result = 0;
  try {
    if (self && self->handle(message, wParam, lParam, result)) return result;
  } catch (const std::exception&) {
    // No exception passes through the system's code; what was asked for did not happen.
    return 0;
  }
  return DefWindowProcW(window, message, wParam, lParam);
}

bool DialogWindow::handle(UINT message, WPARAM wParam, LPARAM lParam, LRESULT& result) {
  const auto* suggested = reinterpret_cast<const RECT*>(lParam);
  switch (message) {
    case WM_COMMAND:
      return command(LOWORD(wParam), HIWORD(wParam)), true;
    case WM_NOTIFY:
      return notified(*reinterpret_cast<const NMHDR*>(lParam), result);
    case WM_TIMER:
      return tick(), true;
    case WM_CLOSE:
      return command(IDCANCEL, 0), true;
    case WM_ACTIVATE:
      return activated(LOWORD(wParam) != WA_INACTIVE), true;
    case WM_SETFOCUS:
      return activated(true), true;
    case DM_GETDEFID:
      return result = MAKELRESULT(defaultButton(), DC_HASDEFID), true;
    case WM_MOUSEWHEEL: {
      wheelRest_ += GET_WHEEL_DELTA_WPARAM(wParam);
      const int notches = wheelRest_ / WHEEL_DELTA;
      wheelRest_ %= WHEEL_DELTA;
      return notches == 0 || wheel(notches);
    }
    case WM_CTLCOLORSTATIC:
    case WM_CTLCOLORBTN: {
      const HBRUSH brush = ground(GetDlgCtrlID(reinterpret_cast<HWND>(lParam)));
      if (brush) SetBkMode(reinterpret_cast<HDC>(wParam), TRANSPARENT);
      return result = reinterpret_cast<LRESULT>(brush), brush != nullptr;
    }
    case WM_DPICHANGED:
      dpi_ = LOWORD(wParam);
      SetWindowPos(window_, nullptr, suggested->left, suggested->top, 0, 0,
                   SWP_NOSIZE | SWP_NOZORDER | SWP_NOACTIVATE);
      return layOut(), true;
    case WM_NCDESTROY:
      return gone(), false;
    default:
      return false;
  }
}

void DialogWindow::activated(bool active) {
  if (!active) {
    const HWND focus = GetFocus();
    if (IsChild(window_, focus)) focus_ = focus;
    return;
  }
  const bool usable = focus_ && IsWindowEnabled(focus_) && IsWindowVisible(focus_);
  const HWND next = usable ? focus_ : GetNextDlgTabItem(window_, nullptr, FALSE);
  if (next) SetFocus(next);
}

void DialogWindow::layOut() {
  const HFONT before = std::exchange(font_, messageFont(dpi_));
  RECT area{0, 0, scaled(width_), scaled(height_)};
  AdjustWindowRectExForDpi(&area, kStyle, FALSE, kExtended, dpi_);
  SetWindowPos(window_, nullptr, 0, 0, area.right - area.left, area.bottom - area.top,
               SWP_NOMOVE | SWP_NOZORDER | SWP_NOACTIVATE);
  for (const Placed& control : controls_) {
    const DialogArea& at = control.area;
    SendMessageW(control.window, WM_SETFONT, reinterpret_cast<WPARAM>(font_), TRUE);
    SetWindowPos(control.window, nullptr, scaled(at.left), scaled(at.top), scaled(at.width),
                 scaled(at.height), SWP_NOZORDER | SWP_NOACTIVATE);
  }
  DeleteObject(before);
  laidOut();
}

void DialogWindow::placeOverOwner() {
  layOut();
  RECT size, over{};
  GetWindowRect(window_, &size);
  MONITORINFO screen{};
  screen.cbSize = sizeof screen;
  GetMonitorInfoW(MonitorFromWindow(owner_ ? owner_ : window_, MONITOR_DEFAULTTONEAREST), &screen);
  const RECT& work = screen.rcWork;
  const LONG width = size.right - size.left, height = size.bottom - size.top;
  if (owner_)
    GetWindowRect(owner_, &over);
  else
    over = {work.left, work.top, work.right, work.bottom};
  const LONG middle = over.left + (over.right - over.left - width) / 2;
  const LONG left = std::max(work.left, std::min(middle, work.right - width));
  const LONG top = std::max(work.top, std::min(over.top + scaled(40), work.bottom - height));
  SetWindowPos(window_, nullptr, left, top, 0, 0, SWP_NOSIZE | SWP_NOZORDER | SWP_NOACTIVATE);
}

}  // namespace kelvane::win32
