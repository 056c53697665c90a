#include "win32/panel_window.h"

#include <commctrl.h>

#include <algorithm>
#include <utility>

#include "gui/win32/held_keys.h"
#include "gui/win32/text_size.h"
#include "gui/win32/window_barrier.h"
#include "ui/global.h"
#include "ui/main_controls.h"
#include "win32/colours.h"
#include "win32/screens.h"
#include "win32/sole_panel.h"
#include "win32/text.h"

namespace kelvane::win32 {

namespace {

constexpr wchar_t kPanelClass[] = L"KelvaneMAin";
/// The property by which the panel is found from a window of its own.
constexpr wchar_t kSelf[] = L"KelvanePanel";
constexpr DWORD kPanelStyle =
    WS_OVERLAPPED | WS_CAPTION | WS_SYSMENU | WS_MINIMIZEBOX | WS_CLIPCHILDREN;
/// A private message of wheel drivers: typing gets the keyboard, where the panel has it at all.
constexpr UINT kFocusTyping = 4186;
/// Work beside the window has ended.
constexpr UINT kWorkEnded = WM_APP + 2;
/// Shortest time between two changes of the screen, ms.
constexpr ULONGLONG kFrameTime = 16;
/// Messages that one call of runPending lets run: a window that floods the queue must not hold it.
constexpr int kMostPending = 1000;

/// The outer size of a window that is laid out at a resolution, on a screen of `dpi`.
SIZE windowSize(UINT resolution, UINT dpi) {
  RECT area{0, 0, scaled(kMainWidth, resolution), scaled(kMainHeight, resolution)};
  AdjustWindowRectExForDpi(&area, kPanelStyle, FALSE, 0, dpi);
  return {area.right - area.left, area.bottom - area.top};
}

/// The next message that is neither key nor mouse. Those wait for the loop, which previews them: a
/// command that lets events run would else have the next key go past the keyboard language.
bool takeNoInput(MSG& message) {
  constexpr std::pair<UINT, UINT> kRanges[] = {
      {0, WM_KEYFIRST - 1}, {WM_KEYLAST + 1, WM_MOUSEFIRST - 1}, {WM_MOUSELAST + 1, 0xFFFF}};
  return std::ranges::any_of(kRanges, [&message](const auto& range) {
    return PeekMessageW(&message, nullptr, range.first, range.second, PM_REMOVE) != 0;
  });
}

/// Whether a message is the operator's hand at keys, a button of the mouse or the wheel.
bool byHand(UINT message) {
  switch (message) {
    case WM_KEYDOWN:
    case WM_SYSKEYDOWN:
    case WM_MOUSEWHEEL:
    case WM_MOUSEHWHEEL:
      return true;
    default:
      return (message > WM_MOUSEMOVE && message <= WM_XBUTTONDBLCLK) ||
             (message > WM_NCMOUSEMOVE && message <= WM_NCXBUTTONDBLCLK);
  }
}

/// Whether Alt was down when a key's message was made.
bool heldWithAlt(LPARAM lParam) { return (HIWORD(lParam) & KF_ALTDOWN) != 0; }

/// What lies in the program's other windows is drawn with the same colours.
BOOL CALLBACK repaintWhole(HWND window, LPARAM) {
  RedrawWindow(window, nullptr, nullptr, RDW_INVALIDATE | RDW_ERASE | RDW_ALLCHILDREN);
  return TRUE;
}

void keepOnTop(HWND window, bool onTop) {
  SetWindowPos(window, onTop ? HWND_TOPMOST : HWND_NOTOPMOST, 0, 0, 0, 0, SWP_NOMOVE | SWP_NOSIZE);
}

}  // namespace

PanelWindow::PanelWindow(HINSTANCE instance) {
  registerPanelControls(instance);
  WNDCLASSW own{};
  own.hInstance = instance;
  own.hIcon = LoadIconW(instance, MAKEINTRESOURCEW(1));
  own.hCursor = LoadCursorW(nullptr, IDC_ARROW);
  own.lpszClassName = kPanelClass;
  registerWindows(own);
  window_ = CreateWindowExW(0, kPanelClass, L"Kelvane", kPanelStyle, CW_USEDEFAULT, CW_USEDEFAULT,
                            0, 0, nullptr, nullptr, instance, this);
  SetPropW(window_, kSelf, this);
  workWake_ = std::make_unique<PostedWake>(window_, kWorkEnded);
  inputHook_ = SetWindowsHookExW(WH_GETMESSAGE, noteHand, nullptr, GetCurrentThreadId());
  tabs_ = std::make_unique<TabStrip>(window_);
  // Before the panel that it lies on: what is made later lies beneath.
  meter_ = std::make_unique<MeterStrip>(window_);
  tips_ = std::make_unique<ToolTips>(window_, ToolTips::Messages::Relayed);
  ControlEvents& events = *this;
  const UINT dpi = resolution();
  for (const ControlRow& row : mainControls()) {
    for (int element = 0; element < row.count; ++element)
      panelControls_.push_back(std::make_unique<PanelControl>(window_, row, element, events, dpi));
  }
  raiseAboveTabs();
  layOut(dpi);
}

PanelWindow::~PanelWindow() {
  panel_ = nullptr;
  UnhookWindowsHookEx(inputHook_);
  if (IsWindow(window_)) DestroyWindow(window_);
}

void PanelWindow::present(MAin& panel) {
  panel_ = &panel;
  show();
  moveToStart();
  ShowWindow(window_, SW_SHOWNORMAL);
  // Not every system remembers it for a window that was not shown yet.
  if (onTop_) keepOnTop(window_, true);
  explain();
  panel_->activated();
  schedule();
}

// What only a resting pointer or a screen reader asks for does not hold back what is seen.
void PanelWindow::explain() {
  described_ = true;
  tabs_->speak();
  meter_->speak();
  for (const auto& control : panelControls_) {
    control->speak();
    if (!control->shown().tip.empty()) tips_->set(control->window(), control->shown().tip);
  }
}

int PanelWindow::run() {
  MSG message;
  while (GetMessageW(&message, nullptr, 0, 0) > 0) {
    tips_->relay(message);
    bool taken = false;
    const bool whole = windowBarrier(window_, message.message, [&] { taken = preview(message); });
    if (whole && !taken) {
      TranslateMessage(&message);
      DispatchMessageW(&message);
    }
    windowBarrier(window_, WM_NULL, [this] { changed(); });
  }
  return static_cast<int>(message.wParam);
}

bool PanelWindow::preview(const MSG& message) {
  if (!panel_ || GetAncestor(message.hwnd, GA_ROOT) != window_) return false;
  const auto code = static_cast<int>(message.wParam);
  const int focused = GetDlgCtrlID(message.hwnd);
  switch (message.message) {
    case WM_KEYDOWN:
    case WM_SYSKEYDOWN:
      return panel_->previewKeyDown(code, heldKeys(), focused);
    case WM_CHAR:
      return panel_->previewKeyPress(code, focused);
    case WM_SYSCHAR:
      // While no control has the focus the system sends every key so.
      return heldWithAlt(message.lParam) ? panel_->accelerator(static_cast<char32_t>(code))
                                         : panel_->previewKeyPress(code, focused);
    case WM_MOUSEWHEEL:
      // Some systems send it to the window under the pointer, some to the one with the focus.
      if (wheelPresent_) panel_->wheel(GET_WHEEL_DELTA_WPARAM(message.wParam));
      return wheelPresent_;
    default:
      return false;
  }
}

/// The tabs' strip is as wide as the window; what lies at its right end must not be under it.
void PanelWindow::raiseAboveTabs() const {
  for (const int control : {id::Opener + 7, id::Opener + 8})
    SetWindowPos(GetDlgItem(window_, control), HWND_TOP, 0, 0, 0, 0,
                 SWP_NOMOVE | SWP_NOSIZE | SWP_NOACTIVATE);
}

/// A wheel of the system's, or one of the driver of old.
bool PanelWindow::wheelPresent() {
  return GetSystemMetrics(SM_MOUSEWHEELPRESENT) || FindWindowW(L"MouseZ", L"Magellan MSWHEEL");
}

LRESULT CALLBACK PanelWindow::noteHand(int code, WPARAM wParam, LPARAM lParam) {
  const auto& message = *reinterpret_cast<const MSG*>(lParam);
  if (code == HC_ACTION && wParam == PM_REMOVE && byHand(message.message)) {
    // Each of the program's windows belongs to the panel.
    const HWND owner = GetAncestor(message.hwnd, GA_ROOTOWNER);
    const auto* self = reinterpret_cast<const PanelWindow*>(GetPropW(owner, kSelf));
    barrier("noting the operator's hand", [self] {
      if (self && self->panel_) self->panel_->handMoved();
    });
  }
  return CallNextHookEx(nullptr, code, wParam, lParam);
}

bool PanelWindow::handle(UINT message, WPARAM wParam, LPARAM lParam, LRESULT& result) {
  if (message == WM_DESTROY) PostQuitMessage(0);
  if (!panel_ || !command(message, wParam, lParam, result)) return false;
  changed();
  return true;
}

bool PanelWindow::command(UINT message, WPARAM wParam, LPARAM lParam, LRESULT& result) {
  const auto* notice = reinterpret_cast<const NMHDR*>(lParam);
  if (message == SolePanel::showMessage()) {
    comeForward();
    result = SolePanel::kAnswer;
    return true;
  }
  switch (message) {
    case WM_TIMER:
      if (wParam == kTick) panel_->tick(std::chrono::steady_clock::now());
      if (wParam == kFrame) show();
      return true;
    case kWorkEnded:
      panel_->workEnded();
      return true;
    case WM_NOTIFY:
      return tabNotified(*notice);
    case WM_COMMAND:
      if (HIWORD(wParam) == BN_CLICKED) clicked(LOWORD(wParam), MouseButton::Left);
      return true;
    case WM_SETFOCUS:
      panel_->activated();
      return true;
    case WM_MOUSEWHEEL:
      // Sent by another program, past the message loop.
      if (wheelPresent_) panel_->wheel(GET_WHEEL_DELTA_WPARAM(wParam));
      return wheelPresent_;
    case kFocusTyping:
      if (wheelPresent_ && active()) focus(id::FrqFocus);
      return false;
    case WM_ERASEBKGND:
      erase(reinterpret_cast<HDC>(wParam));
      result = 1;
      return true;
    case WM_WINDOWPOSCHANGED:
      noteMove();
      return false;
    case WM_DPICHANGED:
      dpiChanged(LOWORD(wParam), *reinterpret_cast<const RECT*>(lParam));
      return true;
    case WM_SETTINGCHANGE:
    case WM_SYSCOLORCHANGE:
      settingsChanged();
      return false;
    case WM_SYSCOMMAND:
      return systemCommand(wParam, lParam);
    case WM_QUERYENDSESSION:
      result = TRUE;
      return true;
    case WM_ENDSESSION:
      if (wParam) unload(Ending::WithSystem);
      return true;
    case WM_CLOSE:
      endByOperator();
      return true;
    default:
      return false;
  }
}

bool PanelWindow::tabNotified(const NMHDR& notice) {
  if (notice.code != TCN_SELCHANGE) return tabs_->explains(notice);
  panel_->tabClicked(tabs_->selected());
  // Not with the next frame: another receiver is what he looks for now.
  show();
  return true;
}

bool PanelWindow::systemCommand(WPARAM command, LPARAM lParam) {
  // An Alt that was let go after a shortcut would start the menu loop, which swallows keys.
  if ((command & 0xFFF0) != SC_KEYMENU || lParam == ' ') return false;
  panel_->accelerator(static_cast<char32_t>(lParam));
  return true;
}

void PanelWindow::endByOperator() {
  if (std::exchange(asking_, true)) return;
  const bool ends = panel_->mayEnd();
  asking_ = false;
  // The system may have ended the program while it was asked.
  if (!ends || !panel_) return;
  unload(Ending::ByOperator);
  DestroyWindow(window_);
}

void PanelWindow::unload(Ending how) {
  MAin* panel = std::exchange(panel_, nullptr);
  panel->unload(placement(), how);
}

void PanelWindow::changed() {
  if (!panel_) return;
  if (panel_->nextDue() != scheduled_) schedule();
  // Most messages change nothing: only what is shown counts as a frame.
  if (panel_->view() == presented_) return;
  const ULONGLONG since = GetTickCount64() - lastFrame_;
  if (since >= kFrameTime) return show();
  if (!std::exchange(frameWaits_, true))
    SetTimer(window_, kFrame, static_cast<UINT>(kFrameTime - since), nullptr);
}

void PanelWindow::show() {
  if (std::exchange(frameWaits_, false)) KillTimer(window_, kFrame);
  lastFrame_ = GetTickCount64();
  panel_->settleFocus();
  MainView& view = panel_->view();
  // A press was made for the receiver that was shown then.
  if (view.TabStrip.selected != presented_.TabStrip.selected) {
    for (const auto& control : panelControls_) control->dropPress();
  }
  presented_ = view;
  if (std::exchange(caption_, view.caption) != view.caption)
    SetWindowTextW(window_, wide(view.caption).c_str());
  if (std::exchange(onTop_, view.onTop) != view.onTop) keepOnTop(window_, onTop_);
  if (std::exchange(choice_, view.colours) != view.colours) choose(choice_);
  tabs_->show(view.TabStrip);
  // The box blinks, but what it is about lasts.
  meter_->show(view.meter, !view.RxWhy.visible);
  for (const auto& control : panelControls_) {
    const Control& next = control->row().of(view, control->element());
    if (described_ && next.tip != control->shown().tip) tips_->set(control->window(), next.tip);
    control->show(next);
  }
}

void PanelWindow::schedule() {
  scheduled_ = panel_->nextDue();
  const auto wait =
      std::chrono::duration_cast<milliseconds>(scheduled_ - std::chrono::steady_clock::now());
  const auto due = std::clamp<long long>(wait.count() + 1, USER_TIMER_MINIMUM, 1000);
  SetTimer(window_, kTick, static_cast<UINT>(due), nullptr);
}

void PanelWindow::layOut(UINT dpi) {
  // The old fonts go when the controls have the new ones.
  auto fonts = std::make_unique<Fonts>(dpi);
  applyLook(dpi, *fonts);
  fonts_ = std::move(fonts);
  laidOutAt_ = dpi;
}

void PanelWindow::applyLook(UINT dpi, const Fonts& fonts) {
  const Palette& palette = colours_.now();
  tabs_->place(dpi, fonts, palette);
  meter_->place(dpi, fonts, palette);
  for (const auto& control : panelControls_) control->place(dpi, fonts, palette);
}

void PanelWindow::erase(HDC to) const {
  RECT area{};
  GetClientRect(window_, &area);
  SetDCBrushColor(to, resolved(colours_.now().windows.window));
  FillRect(to, &area, static_cast<HBRUSH>(GetStockObject(DC_BRUSH)));
}

UINT PanelWindow::resolution() const {
  return layoutResolution(window_, GetDpiForWindow(window_), kMainWidth, kMainHeight);
}

void PanelWindow::dpiChanged(UINT dpi, const RECT& suggested) {
  const UINT now = layoutResolution(window_, dpi, kMainWidth, kMainHeight);
  const SIZE size = windowSize(now, dpi);
  SetWindowPos(window_, nullptr, suggested.left, suggested.top, size.cx, size.cy,
               SWP_NOZORDER | SWP_NOACTIVATE);
  layOut(now);
}

void PanelWindow::choose(ColourChoice choice) {
  const Palette& before = colours_.now();
  colours_.choose(choice);
  darkenCaption(window_, colours_.now().dark);
  if (&colours_.now() == &before) return;
  applyLook(laidOutAt_, *fonts_);
  EnumThreadWindows(GetCurrentThreadId(), repaintWhole, 0);
}

/// The user may have chosen another size of text, or other colours.
void PanelWindow::settingsChanged() {
  choose(choice_);
  RECT now{};
  GetWindowRect(window_, &now);
  dpiChanged(GetDpiForWindow(window_), now);
}

void PanelWindow::moveToStart() {
  const auto dpi = static_cast<int>(GetDpiForSystem());
  const SIZE size = windowSize(resolution(), GetDpiForWindow(window_));
  const Placement start = panel_->startPlace();
  const Global::Point at = Global::placeOnScreen(
      {Global::pixelsFromTwips(start.left, dpi), Global::pixelsFromTwips(start.top, dpi)},
      {size.cx, size.cy}, GetSystemMetrics(SM_CYCAPTION), screens());
  SetWindowPos(window_, nullptr, at.left, at.top, size.cx, size.cy, SWP_NOZORDER | SWP_NOACTIVATE);
}

/// The place that Windows remembers of a minimised window is counted from the screen's part without
/// the taskbar, and would drift by its thickness.
void PanelWindow::noteMove() {
  if (!IsIconic(window_)) GetWindowRect(window_, &place_);
}

/// The program was started again: whoever did that wants to see this window.
void PanelWindow::comeForward() {
  if (IsIconic(window_)) ShowWindow(window_, SW_RESTORE);
  RECT now{};
  GetWindowRect(window_, &now);
  const Global::Point at =
      Global::placeOnScreen({now.left, now.top}, {now.right - now.left, now.bottom - now.top},
                            GetSystemMetrics(SM_CYCAPTION), screens());
  SetWindowPos(window_, nullptr, at.left, at.top, 0, 0, SWP_NOZORDER | SWP_NOACTIVATE | SWP_NOSIZE);
  SetForegroundWindow(GetLastActivePopup(window_));
}

Placement PanelWindow::placement() const {
  const auto twips = [dpi = static_cast<int>(GetDpiForSystem())](LONG pixels) {
    return Global::twipsFromPixels(pixels, dpi);
  };
  return {twips(place_.left), twips(place_.top), twips(place_.right - place_.left),
          twips(place_.bottom - place_.top)};
}

void PanelWindow::focus(int control) {
  const HWND target = GetDlgItem(window_, control);
  if (target && IsWindowVisible(target) && IsWindowEnabled(target)) SetFocus(target);
}

bool PanelWindow::active() const { return GetActiveWindow() == window_; }

void PanelWindow::beep() { MessageBeep(MB_OK); }

void PanelWindow::runPending() {
  if (std::exchange(pumping_, true)) return;
  MSG message;
  for (int i = 0; i < kMostPending && takeNoInput(message); ++i) {
    if (message.message == WM_QUIT) {
      PostQuitMessage(static_cast<int>(message.wParam));
      break;
    }
    TranslateMessage(&message);
    DispatchMessageW(&message);
  }
  pumping_ = false;
}

void PanelWindow::close() { PostMessageW(window_, WM_CLOSE, 0, 0); }

bool PanelWindow::modalOpen() const { return !IsWindowEnabled(window_); }

std::int32_t PanelWindow::handle() const {
  return static_cast<std::int32_t>(reinterpret_cast<INT_PTR>(window_));
}

void PanelWindow::gotFocus(int control) {
  if (panel_) panel_->gotFocus(control);
}

void PanelWindow::lostFocus(int control) {
  if (panel_) panel_->lostFocus(control);
}

void PanelWindow::keyDown(int control, int keyCode, int shift) {
  if (panel_) panel_->keyDown(control, keyCode, shift);
}

void PanelWindow::keyPress(int control, int character) {
  if (panel_) panel_->keyPress(control, character);
}

void PanelWindow::clicked(int control, MouseButton button) {
  if (panel_) panel_->clicked(control, button);
  // A click that another program sends passes the message loop by.
  changed();
}

}  // namespace kelvane::win32
