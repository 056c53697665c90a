#pragma once

#include <windows.h>

#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "gui/win32/tool_tips.h"
#include "gui/win32/window_base.h"
#include "ui/global.h"
#include "win32/colours.h"
#include "win32/fonts.h"

namespace kelvane::win32 {

/// A window that is painted by ourselves in the palette's colours, beside the main one: it can be
/// sized, keeps its place, and looks for changes 20 times a second while any of it can be seen.
class ViewWindow : private WindowBase<ViewWindow> {
 public:
  /// Sizes are of the inside, in 96ths of an inch.
  struct Design {
    const wchar_t* windowClass;
    std::string title;
    int width, height, leastWidth, leastHeight;
  };
  /// In twips; a size of 0 is the design's own.
  struct Frame {
    Global::Point at;
    int width = 0, height = 0;
  };

  ViewWindow(HWND owner, Design design, std::function<ColourChoice()> colours);
  virtual ~ViewWindow();
  ViewWindow(const ViewWindow&) = delete;
  ViewWindow& operator=(const ViewWindow&) = delete;

  HWND window() const { return window_; }
  const Palette& palette() const { return *palette_; }
  const Colours& colours() const { return palette_->windows; }
  UINT dpi() const { return dpi_; }
  int px(int length) const { return scaled(length, dpi_); }
  HFONT font(Font font) const { return (*fonts_)[font]; }
  /// Shows it, or brings it to the front.
  enum class Keys { Take, Leave };
  void present(Keys keys);

 protected:
  /// The window's parts go to their places; for a new size or resolution.
  virtual void layOut(int width, int height) = 0;
  /// Time has passed, and something of the window can be seen.
  virtual void refresh() = 0;
  virtual void paint(HWND window) = 0;
  /// A button was pressed.
  virtual void command(int id) = 0;
  /// A key for whichever part has the keyboard. Answers whether it was taken.
  virtual bool keyDown(int keyCode, int shift) = 0;
  virtual bool keyPress(int character) = 0;
  /// The part that has the keyboard when the window is the active one.
  virtual HWND startOfKeys() const = 0;
  virtual Frame startFrame(Global::Point owner) const = 0;
  virtual void leftAt(const Frame& frame) = 0;
  /// Colours or resolution have changed.
  virtual void lookChanged() {}

  /// A flat button; `id` is its control's. `text` may mark a letter for Alt.
  HWND addButton(int id, std::string_view text, std::string_view tip);
  /// Another text.
  void setButton(int id, const std::string& text);
  /// The same for one that stays down while what it stands for is on: drawn and spoken so.
  void setToggle(int id, const std::string& text, bool on);
  void place(int id, int left, int top, int width, int height) const;
  void setEnabled(int id, bool enabled);
  HWND item(int id) const { return GetDlgItem(window_, id); }
  int widthOf(std::string_view text, HFONT font) const;
  void setOnTop(bool onTop) const;
  /// The inside needs another height now; a window that is lower grows.
  void needHeight(int height);
  /// Keys and Tab of a part of the window; call first in its procedure.
  bool partMessage(UINT message, WPARAM wParam);

 private:
  friend WindowBase<ViewWindow>;
  bool buttonMessage(HWND button, UINT message, WPARAM wParam, LPARAM lParam, LRESULT& result);
  bool handle(UINT message, WPARAM wParam, LPARAM lParam, LRESULT& result);
  void paintItem(const DRAWITEMSTRUCT& draw) const;
  void paintButton(const DRAWITEMSTRUCT& draw) const;
  void changeLook();
  void layOutAll();
  void restorePlace();
  void keepPlace();
  bool accelerator(char32_t character);
  SIZE frameSize(int width, int height) const;

  Design design_;
  HWND owner_;
  std::function<ColourChoice()> choice_;
  HWND window_ = nullptr;
  const Palette* palette_;
  UINT dpi_ = 96;
  std::unique_ptr<Fonts> fonts_;
  std::unique_ptr<ToolTips> tips_;
  /// What a button was told last: the system is not asked twenty times a second.
  struct Button {
    HWND window = nullptr;
    std::string text;
    std::optional<bool> on;  ///< none for one that does not stay down
    bool enabled = true;
  };
  std::map<int, Button> buttons_;
  bool placed_ = false;
};

/// Whether any of a window is on the screen, not covered by others.
bool canBeSeen(HWND window);

}  // namespace kelvane::win32
