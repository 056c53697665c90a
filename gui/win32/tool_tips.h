#pragma once

#include <windows.h>

#include <string>

namespace kelvane::win32 {

/// The tool tips of one window's controls.
class ToolTips {
 public:
  /// Who hears of the pointer: the tips by themselves, or through relay, which costs the controls
  /// nothing with each of their messages.
  enum class Hears { ByItself, ByRelay };

  explicit ToolTips(HWND owner, Hears hears = Hears::ByItself);
  ~ToolTips();
  ToolTips(const ToolTips&) = delete;
  ToolTips& operator=(const ToolTips&) = delete;

  /// Gives a control its tip, or another one; an empty text shows none.
  void set(HWND control, const std::string& text);
  /// Every message of the owner's thread, where the tips hear by relay.
  void relay(const MSG& message) const;
  /// Gives the window's caption bar a tip.
  void setCaption(const std::string& text);

 private:
  static LRESULT CALLBACK captionProcedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam,
                                           UINT_PTR, DWORD_PTR tips);

  HWND owner_;
  Hears hears_;
  HWND window_;
};

}  // namespace kelvane::win32
