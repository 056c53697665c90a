#include "base/win32/tool_tips.h"

#include <commctrl.h>

#include "base/win32/utf16.h"

namespace kelvane::win32 {

// The tips' window has no owner: with an owned window above it the main window would lose its own
// place above other programs' windows under some systems.
ToolTips::ToolTips(HWND owner)
    : owner_(owner),
      window_(CreateWindowExW(WS_EX_TOPMOST, TOOLTIPS_CLASSW, nullptr,
                              WS_POPUP | TTS_ALWAYSTIP | TTS_NOPREFIX, CW_USEDEFAULT, CW_USEDEFAULT,
                              CW_USEDEFAULT, CW_USEDEFAULT, nullptr, nullptr,
                              GetModuleHandleW(nullptr), nullptr)) {
  SendMessageW(window_, TTM_SETMAXTIPWIDTH, 0, 400);
}

ToolTips::~ToolTips() { DestroyWindow(window_); }

void ToolTips::set(HWND control, const std::string& text) {
  std::wstring tip = wide(text);
  TTTOOLINFOW tool{};
  tool.cbSize = TTTOOLINFOW_V2_SIZE;
  tool.uFlags = TTF_IDISHWND | TTF_SUBCLASS;
  tool.hwnd = owner_;
  tool.uId = reinterpret_cast<UINT_PTR>(control);
  tool.lpszText = tip.data();
  SendMessageW(window_, TTM_DELTOOLW, 0, reinterpret_cast<LPARAM>(&tool));
  if (!tip.empty()) SendMessageW(window_, TTM_ADDTOOLW, 0, reinterpret_cast<LPARAM>(&tool));
}

}  // namespace kelvane::win32
