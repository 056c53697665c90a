#include "gui/win32/dialog_window.h"

#include <algorithm>
#include <exception>
#include <string_view>
#include <utility>

#include "base/text.h"
#include "base/win32/utf16.h"
#include "gui/win32/accessible.h"
#include "gui/win32/common_controls.h"
#include "gui/win32/held_keys.h"
#include "gui/win32/text_size.h"
#include "gui/win32/window_barrier.h"

// The module that this code is linked into, a program's or a component's.
extern "C" IMAGE_DOS_HEADER __ImageBase;

namespace kelvane::win32 {

namespace {

constexpr DWORD kFixed = WS_POPUP | WS_CAPTION | WS_SYSMENU;
constexpr DWORD kResizable = kFixed | WS_THICKFRAME | WS_MAXIMIZEBOX | WS_CLIPCHILDREN;
/// Gives the keyboard back to the owner.
constexpr UINT kGiveBack = WM_APP + 1;
/// What works beside the dialog has news.
constexpr UINT kWorkNews = WM_APP + 2;
/// How long after it was shown a window is activated by nobody's hand, ms.
constexpr ULONGLONG kActivationTime = 500;
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

int lineHeight(HFONT font) {
  const HDC screen = GetDC(nullptr);
  const HGDIOBJ before = SelectObject(screen, font);
  TEXTMETRICW metrics{};
  GetTextMetricsW(screen, &metrics);
  SelectObject(screen, before);
  ReleaseDC(nullptr, screen);
  return metrics.tmHeight;
}

/// The first of the files that were dropped; ends the drop.
std::wstring droppedFile(HDROP drop) {
  std::wstring name(DragQueryFileW(drop, 0, nullptr, 0) + 1, L'\0');
  name.resize(DragQueryFileW(drop, 0, name.data(), static_cast<UINT>(name.size())));
  DragFinish(drop);
  return name;
}

/// What a control needs besides its style.
DWORD extended(const DialogItem& item) {
  const std::wstring_view type(item.windowClass);
  if (type == WC_EDITW || type == WC_LISTVIEWW) return WS_EX_CLIENTEDGE;
  // A frame paints no inside: what lies beneath it has to show there.
  if (type == WC_BUTTONW && (item.style & BS_TYPEMASK) == BS_GROUPBOX) return WS_EX_TRANSPARENT;
  return 0;
}

DWORD styleOf(bool resizable) { return resizable ? kResizable : kFixed; }

DWORD extendedStyleOf(bool resizable) {
  return WS_EX_CONTROLPARENT | (resizable ? 0 : WS_EX_DLGMODALFRAME);
}

bool isKey(UINT message) { return message >= WM_KEYFIRST && message <= WM_KEYLAST; }

}  // namespace

DialogWindow::DialogWindow(const Frame& frame)
    : owner_(frame.owner),
      width_(frame.width),
      height_(frame.height),
      openWidth_(std::max(frame.width, frame.openWidth)),
      openHeight_(std::max(frame.height, frame.openHeight)),
      resizable_(frame.resizable),
      className_(frame.windowClass) {
  common_controls::use(ICC_TAB_CLASSES | ICC_LISTVIEW_CLASSES | ICC_UPDOWN_CLASS |
                       ICC_STANDARD_CLASSES);
  WNDCLASSW own{};
  own.hInstance = module();
  own.hCursor = LoadCursorW(nullptr, IDC_ARROW);
  own.hbrBackground = reinterpret_cast<HBRUSH>(COLOR_BTNFACE + 1);
  own.hIcon = LoadIconW(GetModuleHandleW(nullptr), MAKEINTRESOURCEW(1));  // the program's
  own.lpszClassName = className_;
  registerWindows(own);
  RECT over{};
  if (owner_) GetWindowRect(owner_, &over);
  const bool topmost = owner_ && (GetWindowLongW(owner_, GWL_EXSTYLE) & WS_EX_TOPMOST);
  window_ = CreateWindowExW(extendedStyleOf(resizable_) | (topmost ? WS_EX_TOPMOST : 0), className_,
                            wide(frame.caption).c_str(), styleOf(resizable_), over.left, over.top,
                            0, 0, owner_, nullptr, module(), nullptr);
  SetPropW(window_, kSelf, this);
  keep(window_, this);
  tips_ = std::make_unique<ToolTips>(window_);
  measure(GetDpiForWindow(window_));
  font_ = messageFont(dpi_);
}

DialogWindow::~DialogWindow() {
  // What a class of dialogs adds is gone by now: nothing may be told to it any more.
  if (window_) RemovePropW(window_, kSelf);
  endWindow(window_);
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
  const std::wstring_view kind = item.windowClass;
  const bool oneLine = kind == WC_EDITW && !(item.style & ES_MULTILINE);
  controls_.push_back({control, item.area, item.follow, item.announced, oneLine});
  if (kind == WC_BUTTONW)
    common_controls::setSubclass(control, buttonProcedure, 0, reinterpret_cast<DWORD_PTR>(this));
  name(control, item);
  if (!item.tip.empty()) tips_->set(control, item.tip);
  return control;
}

void DialogWindow::name(HWND control, const DialogItem& item) {
  const std::wstring_view type(item.windowClass);
  const std::string label = std::exchange(label_, type == WC_STATICW ? item.text : "");
  if (item.announced) makeAnnounced(control);
  if (!item.spoken.empty()) return speakAs(control, item.spoken);
  // These say their own text.
  if (type == WC_STATICW || type == WC_BUTTONW) return;
  const bool ownText = item.text.empty() || type == WC_EDITW;
  const std::string name = spokenCaption(ownText ? label : item.text);
  if (!name.empty()) speakAs(control, name);
}

std::string DialogWindow::text(int id) const {
  const HWND control = item(id);
  std::wstring text(static_cast<std::size_t>(GetWindowTextLengthW(control)), L'\0');
  text.resize(static_cast<std::size_t>(
      GetWindowTextW(control, text.data(), static_cast<int>(text.size()) + 1)));
  return narrow(text);
}

void DialogWindow::setText(int id, const std::string& text) {
  if (this->text(id) == text) return;
  SetDlgItemTextW(window_, id, wide(text).c_str());
  const auto shown = std::ranges::find(controls_, item(id), &Placed::window);
  if (shown != controls_.end() && shown->announced && !text.empty()) announce(shown->window);
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
HBRUSH DialogWindow::background(int) const { return nullptr; }
POINT DialogWindow::place(SIZE, POINT overOwner) const { return overOwner; }

void DialogWindow::prepare() {
  placeOverOwner();
  prepared_ = true;
}

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

void DialogWindow::showModeless(Keyboard keyboard) {
  if (!window_) return;
  if (!IsWindowVisible(window_)) placeOverOwner();
  if (!hook_) hook_ = SetWindowsHookExW(WH_GETMESSAGE, previewKeys, nullptr, GetCurrentThreadId());
  leftUntil_ = keyboard == Keyboard::Leave ? GetTickCount64() + kActivationTime : 0;
  if (keyboard == Keyboard::Leave) {
    SetWindowPos(window_, HWND_TOP, 0, 0, 0, 0,
                 SWP_NOMOVE | SWP_NOSIZE | SWP_NOACTIVATE | SWP_SHOWWINDOW);
    return;
  }
  ShowWindow(window_, SW_SHOW);
  SetForegroundWindow(window_);
}

void DialogWindow::showPointer() const {
  POINT at{};
  GetCursorPos(&at);
  const HWND under = WindowFromPoint(at);
  if (!window_ || (under != window_ && !IsChild(window_, under))) return;
  const LRESULT part = SendMessageW(under, WM_NCHITTEST, 0, MAKELPARAM(at.x, at.y));
  SendMessageW(under, WM_SETCURSOR, reinterpret_cast<WPARAM>(under),
               MAKELPARAM(part, WM_MOUSEMOVE));
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
  // While no control has the focus the system sends every key so, Alt or not.
  const bool withAlt = message.message == WM_SYSCHAR && (HIWORD(message.lParam) & KF_ALTDOWN);
  if (withAlt && accelerator(static_cast<wchar_t>(message.wParam))) return true;
  return window_ && IsDialogMessageW(window_, &message);
}

// A program's own message loop knows nothing of a component's dialog and its keys.
LRESULT CALLBACK DialogWindow::previewKeys(int code, WPARAM wParam, LPARAM lParam) {
  // First, so that whoever else listens hears the key as it came.
  const LRESULT next = CallNextHookEx(nullptr, code, wParam, lParam);
  auto* message = reinterpret_cast<MSG*>(lParam);
  if (code == HC_ACTION && wParam == PM_REMOVE && isKey(message->message)) {
    DialogWindow* dialog = dialogOf(GetAncestor(message->hwnd, GA_ROOT));
    const bool whole = windowBarrier(message->hwnd, message->message, [&] {
      if (dialog && dialog->hook_ && dialog->takes(*message)) message->message = WM_NULL;
    });
    if (!whole) message->message = WM_NULL;
  }
  return next;
}

void DialogWindow::addEnds(const Ends& ends) {
  constexpr int kHeight = 26, kGap = 8;
  const DialogArea ok{ends.left, ends.top, ends.width, kHeight};
  const DialogArea cancel{ends.left + ends.width + kGap, ends.top, ends.width, kHeight};
  add({IDOK, WC_BUTTONW, BS_DEFPUSHBUTTON | WS_TABSTOP, ends.ok, ok, ends.tip, ends.follow});
  add({IDCANCEL, WC_BUTTONW, BS_PUSHBUTTON | WS_TABSTOP, ends.cancel, cancel, "", ends.follow});
}

std::function<void()> DialogWindow::waker() {
  if (!wake_) wake_ = std::make_shared<PostedWake>(window_, kWorkNews);
  return [wake = wake_] { wake->post(); };
}

bool DialogWindow::handle(UINT message, WPARAM wParam, LPARAM lParam, LRESULT& result) {
  switch (message) {
    case WM_COMMAND:
      if (HIWORD(wParam) == BN_CLICKED) giveKeyboardBack();
      command(LOWORD(wParam), HIWORD(wParam));
      return true;
    case WM_NOTIFY:
      return notified(*reinterpret_cast<const NMHDR*>(lParam), result);
    case WM_TIMER:
    case kWorkNews:
      tick();
      return true;
    case WM_DROPFILES:
      fileDropped(droppedFile(reinterpret_cast<HDROP>(wParam)));
      return true;
    case WM_SETCURSOR:
      if (LOWORD(lParam) != HTCLIENT || !waiting()) return false;
      SetCursor(LoadCursorW(nullptr, IDC_WAIT));
      result = TRUE;
      return true;
    case WM_CLOSE:
      command(IDCANCEL, 0);
      return true;
    case WM_ACTIVATE:
      if (LOWORD(wParam) == WA_CLICKACTIVE) leftUntil_ = 0;  // the operator's own wish
      activated(LOWORD(wParam) != WA_INACTIVE);
      return true;
    case WM_SETFOCUS:
      activated(true);
      return true;
    case WM_ENABLE:
      if (wParam && !IsWindowVisible(window_)) ShowWindow(window_, SW_SHOWNA);
      return false;
    case WM_NEXTDLGCTL:
      goTo(wParam, LOWORD(lParam) != 0);
      return true;
    case DM_GETDEFID:
      result = MAKELRESULT(defaultButton(), DC_HASDEFID);
      return true;
    case WM_MOUSEWHEEL: {
      wheelRest_ += GET_WHEEL_DELTA_WPARAM(wParam);
      const int notches = wheelRest_ / WHEEL_DELTA;
      wheelRest_ %= WHEEL_DELTA;
      return notches == 0 || wheel(notches);
    }
    case WM_CTLCOLORSTATIC:
    case WM_CTLCOLORBTN: {
      const HBRUSH brush = background(GetDlgCtrlID(reinterpret_cast<HWND>(lParam)));
      if (brush) {
        SetBkMode(reinterpret_cast<HDC>(wParam), TRANSPARENT);
        SetTextColor(reinterpret_cast<HDC>(wParam), GetSysColor(COLOR_WINDOWTEXT));
      }
      result = reinterpret_cast<LRESULT>(brush);
      return brush != nullptr;
    }
    case WM_SIZE:
      if (resizable_ && wParam != SIZE_MINIMIZED) {
        placeControls();
        resized();
      }
      return false;
    case WM_GETMINMAXINFO: {
      const SIZE least = outerSize(width_, height_);
      reinterpret_cast<MINMAXINFO*>(lParam)->ptMinTrackSize = {least.cx, least.cy};
      return true;
    }
    case WM_DPICHANGED:
      dpiChanged(LOWORD(wParam), *reinterpret_cast<const RECT*>(lParam));
      return true;
    case kGiveBack:
      SetForegroundWindow(owner_);
      return true;
    case WM_NCDESTROY:
      gone();
      return false;
    default:
      return false;
  }
}

void DialogWindow::activated(bool active) {
  // Some window managers give every new window the keyboard, whatever it asked for.
  if (active && GetTickCount64() < std::exchange(leftUntil_, 0) && owner_)
    return static_cast<void>(PostMessageW(window_, kGiveBack, 0, 0));
  if (!active) {
    const HWND focus = GetFocus();
    if (IsChild(window_, focus)) focus_ = focus;
    // Now, not sooner: the system would give the keyboard of a hidden window to any other one.
    if (!IsWindowEnabled(window_) && makesRoom()) ShowWindow(window_, SW_HIDE);
    return;
  }
  const bool usable = focus_ && IsWindowEnabled(focus_) && IsWindowVisible(focus_);
  const HWND next = usable ? focus_ : GetNextDlgTabItem(window_, nullptr, FALSE);
  if (next) SetFocus(next);
}

LRESULT CALLBACK DialogWindow::buttonProcedure(HWND button, UINT message, WPARAM wParam,
                                               LPARAM lParam, UINT_PTR, DWORD_PTR self) {
  auto* dialog = reinterpret_cast<DialogWindow*>(self);
  const bool press = message == WM_LBUTTONDOWN || message == WM_LBUTTONDBLCLK;
  if (press) win32::windowBarrier(button, message, [=] { dialog->buttonPressed(button); });
  if (message == WM_NCDESTROY) common_controls::removeSubclass(button, buttonProcedure, 0);
  const LRESULT result = common_controls::defSubclass(button, message, wParam, lParam);
  // Released beside the button, which tells nobody of it. The dialog may be gone after a click.
  if (message == WM_LBUTTONUP && IsWindow(button))
    win32::windowBarrier(button, message, [=] { dialog->giveKeyboardBack(); });
  return result;
}

// A window that stays open is worked in with keys: a button pressed in passing keeps none of them,
// which would press buttons from then on.
void DialogWindow::buttonPressed(HWND button) {
  const HWND focus = GetFocus();
  keyboardWas_ = keyboardWasIn_ = nullptr;
  if (!hook_ || focus == button || !IsChild(window_, focus)) return;
  keyboardWas_ = keyboardWasIn_ = focus;
  while (GetParent(keyboardWasIn_) != window_) keyboardWasIn_ = GetParent(keyboardWasIn_);
}

void DialogWindow::giveKeyboardBack() {
  const auto usable = [](HWND control) {
    return control && IsWindow(control) && IsWindowVisible(control) && IsWindowEnabled(control);
  };
  const HWND was = std::exchange(keyboardWas_, nullptr);
  if (!was) return;
  // What an entry was typed into may have gone when it was left.
  if (usable(was))
    SetFocus(was);
  else if (usable(keyboardWasIn_))
    SetFocus(keyboardWasIn_);
}

void DialogWindow::goTo(WPARAM which, bool named) {
  const HWND next = named ? reinterpret_cast<HWND>(which)
                          : GetNextDlgTabItem(window_, GetFocus(), which != 0 ? TRUE : FALSE);
  if (!next) return;
  SetFocus(next);
  if (SendMessageW(next, WM_GETDLGCODE, 0, 0) & DLGC_HASSETSEL)
    SendMessageW(next, EM_SETSEL, 0, -1);
}

SIZE DialogWindow::outerSize(int width, int height) const {
  RECT area{0, 0, scaled(width), scaled(height)};
  AdjustWindowRectExForDpi(&area, styleOf(resizable_), FALSE, extendedStyleOf(resizable_),
                           GetDpiForWindow(window_));
  return {area.right - area.left, area.bottom - area.top};
}

void DialogWindow::measure(UINT dpi) {
  dpi_ = layoutResolution(window_, dpi, width_, height_);
  setResolution(window_, dpi_);
}

void DialogWindow::dpiChanged(UINT dpi, const RECT& suggested) {
  measure(dpi);
  SIZE size = outerSize(width_, height_);
  if (resizable_) size = {suggested.right - suggested.left, suggested.bottom - suggested.top};
  SetWindowPos(window_, nullptr, suggested.left, suggested.top, size.cx, size.cy,
               SWP_NOZORDER | SWP_NOACTIVATE);
  applyFont();
}

void DialogWindow::applyFont() {
  const HFONT before = std::exchange(font_, messageFont(dpi_));
  for (const Placed& control : controls_)
    SendMessageW(control.window, WM_SETFONT, reinterpret_cast<WPARAM>(font_), TRUE);
  DeleteObject(before);
  placeControls();
  laidOut();
}

void DialogWindow::placeControls() {
  RECT inside;
  GetClientRect(window_, &inside);
  const int wider = std::max(0, static_cast<int>(inside.right) - scaled(width_));
  const int higher = std::max(0, static_cast<int>(inside.bottom) - scaled(height_));
  const int field = lineHeight(font_) + 2 * GetSystemMetricsForDpi(SM_CYEDGE, dpi_) + scaled(4);
  for (const Placed& control : controls_) {
    const DialogArea& at = control.area;
    const auto extra = [&control](Follow follow, int length) {
      return control.follow & follow ? length : 0;
    };
    // A field writes at its upper edge: it is as high as its line, in the middle of its place.
    const int height = scaled(at.height) + extra(Heighten, higher);
    const int spare = control.oneLine ? std::max(0, height - field) / 2 : 0;
    SetWindowPos(control.window, nullptr, scaled(at.left) + extra(MoveRight, wider),
                 scaled(at.top) + extra(MoveDown, higher) + spare,
                 scaled(at.width) + extra(Widen, wider), height - 2 * spare,
                 SWP_NOZORDER | SWP_NOACTIVATE);
  }
}

void DialogWindow::placeOverOwner() {
  RECT over{};
  MONITORINFO screen{};
  screen.cbSize = sizeof screen;
  GetMonitorInfoW(MonitorFromWindow(owner_ ? owner_ : window_, MONITOR_DEFAULTTONEAREST), &screen);
  const RECT& work = screen.rcWork;
  const SIZE least = outerSize(width_, height_), wanted = outerSize(openWidth_, openHeight_);
  const LONG width = std::max(least.cx, std::min(wanted.cx, work.right - work.left));
  LONG height = std::max(least.cy, std::min(wanted.cy, work.bottom - work.top));
  if (owner_)
    GetWindowRect(owner_, &over);
  else
    over = {work.left, work.top, work.right, work.bottom};
  const LONG middle = over.left + (over.right - over.left - width) / 2;
  const LONG left = std::max(work.left, std::min(middle, work.right - width));
  // One that stays open leaves the owner in sight, where there is room below it; it opens smaller
  // for that, and else covers the owner's lower part.
  const LONG room = work.bottom - over.bottom;
  const bool below = resizable_ && owner_ && room >= least.cy;
  if (below) height = std::min(height, room);
  const LONG beside = resizable_ && owner_ ? work.bottom - height : over.top + scaled(40);
  const LONG wantedTop = below ? over.bottom : beside;
  const LONG top = std::max(work.top, std::min(wantedTop, work.bottom - height));
  const POINT at = place({width, height}, {left, top});
  SetWindowPos(window_, nullptr, at.x, at.y, width, height, SWP_NOZORDER | SWP_NOACTIVATE);
  if (!std::exchange(prepared_, false)) applyFont();
}

}  // namespace kelvane::win32
