#pragma once

#include <windows.h>

#include <string>

namespace kelvane::win32 {

/// The tool tips of one window's controls.
class ToolTips {
 public:
  /// How the tips get the pointer's messages: from the controls themselves, or through relay, which
  /// costs the controls nothing with each of their messages.
  enum class Messages { Subclassed, Relayed };

  explicit ToolTips(HWND owner, Messages messages = Messages::Subclassed);
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
  Messages messages_;
  HWND window_;
};

}  // namespace kelvane::win32
