#include "gui/win32/tool_tips.h"

#include <commctrl.h>

#include "base/win32/utf16.h"
#include "gui/win32/common_controls.h"

namespace kelvane::win32 {

namespace {

/// The caption's number among the tools, where no window's handle can be.
constexpr UINT_PTR kCaption = 1;
/// More than any caption bar is high, or any window wide.
constexpr LONG kOutsideScreen = 30'000;

}  // namespace

// The tips' window has no owner: with an owned window above it the main window would lose its own
// place above other programs' windows under some systems.
ToolTips::ToolTips(HWND owner, Messages messages)
    : owner_(owner),
      messages_(messages),
      window_(CreateWindowExW(WS_EX_TOPMOST, TOOLTIPS_CLASSW, nullptr,
                              WS_POPUP | TTS_ALWAYSTIP | TTS_NOPREFIX, CW_USEDEFAULT, CW_USEDEFAULT,
                              CW_USEDEFAULT, CW_USEDEFAULT, nullptr, nullptr,
                              GetModuleHandleW(nullptr), nullptr)) {
  SendMessageW(window_, TTM_SETMAXTIPWIDTH, 0, 400);
}

ToolTips::~ToolTips() {
  common_controls::removeSubclass(owner_, captionProcedure, kCaption);
  DestroyWindow(window_);
}

void ToolTips::set(HWND control, const std::string& text) {
  std::wstring tip = wide(text);
  TTTOOLINFOW tool{};
  tool.cbSize = TTTOOLINFOW_V2_SIZE;
  tool.uFlags = TTF_IDISHWND | (messages_ == Messages::Subclassed ? TTF_SUBCLASS : 0);
  tool.hwnd = owner_;
  tool.uId = reinterpret_cast<UINT_PTR>(control);
  tool.lpszText = tip.data();
  SendMessageW(window_, TTM_DELTOOLW, 0, reinterpret_cast<LPARAM>(&tool));
  if (!tip.empty()) SendMessageW(window_, TTM_ADDTOOLW, 0, reinterpret_cast<LPARAM>(&tool));
}

void ToolTips::relay(const MSG& message) const {
  if (message.message < WM_MOUSEFIRST || message.message > WM_MBUTTONUP) return;
  MSG told = message;
  SendMessageW(window_, TTM_RELAYEVENT, 0, reinterpret_cast<LPARAM>(&told));
}

void ToolTips::setCaption(const std::string& text) {
  std::wstring tip = wide(text);
  TTTOOLINFOW tool{};
  tool.cbSize = TTTOOLINFOW_V2_SIZE;
  tool.hwnd = owner_;
  tool.uId = kCaption;
  tool.rect = {-kOutsideScreen, -kOutsideScreen, kOutsideScreen, 0};
  tool.lpszText = tip.data();
  SendMessageW(window_, TTM_DELTOOLW, 0, reinterpret_cast<LPARAM>(&tool));
  if (tip.empty()) return;
  SendMessageW(window_, TTM_ADDTOOLW, 0, reinterpret_cast<LPARAM>(&tool));
  common_controls::setSubclass(owner_, captionProcedure, kCaption,
                               reinterpret_cast<DWORD_PTR>(this));
}

// The system watches the inside of a window alone. The caption lies above it, at negative places.
LRESULT CALLBACK ToolTips::captionProcedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam,
                                            UINT_PTR, DWORD_PTR tips) {
  if (message == WM_NCMOUSEMOVE) {
    POINT at{static_cast<short>(LOWORD(lParam)), static_cast<short>(HIWORD(lParam))};
    ScreenToClient(window, &at);
    MSG moved{};
    moved.hwnd = window;
    moved.message = WM_MOUSEMOVE;
    moved.lParam = MAKELPARAM(at.x, at.y);
    SendMessageW(reinterpret_cast<ToolTips*>(tips)->window_, TTM_RELAYEVENT, 0,
                 reinterpret_cast<LPARAM>(&moved));
  }
  return common_controls::defSubclass(window, message, wParam, lParam);
}

}  // namespace kelvane::win32
