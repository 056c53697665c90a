#pragma once

#include <windows.h>

#include <string>

namespace kelvane::win32 {

/// The tool tips of one window's controls.
class ToolTips {
 public:
  explicit ToolTips(HWND owner);
  ~ToolTips();
  ToolTips(const ToolTips&) = delete;
  ToolTips& operator=(const ToolTips&) = delete;

  /// Gives a control its tip, or another one; an empty text shows none.
  void set(HWND control, const std::string& text);
  /// Gives the window's caption bar a tip.
  void setCaption(const std::string& text);

 private:
  static LRESULT CALLBACK captionProcedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam,
                                           UINT_PTR, DWORD_PTR tips);

  HWND owner_;
  HWND window_;
};

}  // namespace kelvane::win32
