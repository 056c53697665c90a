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

 private:
  HWND owner_;
  HWND window_;
};

}  // namespace kelvane::win32
