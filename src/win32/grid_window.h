#pragma once

#include <windows.h>

#include <memory>
#include <string>

#include "grid/grid.h"
#include "gui/win32/tool_tips.h"
#include "gui/win32/window_base.h"
#include "win32/colours.h"

namespace kelvane::win32 {

/// A grid on the screen: header, rows, the field in which a cell is edited, pick lists, and a field
/// for finding (Ctrl+F). It is a child window of its own class, made as any control is; it takes
/// its font by WM_SETFONT and scales with the screen's resolution. Its window text says the current
/// cell in words, for screen readers.
class GridWindow : private WindowBase<GridWindow> {
 public:
  static constexpr wchar_t kClass[] = L"KelvaneGrid";
  static constexpr DWORD kStyle =
      WS_TABSTOP | WS_VSCROLL | WS_HSCROLL | WS_CLIPCHILDREN | WS_CLIPSIBLINGS;
  /// Ids of what the grid consists of.
  enum Part : int { Header = 1, Entry, List, FindLabel, FindField };

  /// Makes the class known; once is enough, more do no harm.
  static void registerClass(HINSTANCE instance);

  /// Lives in a window made of the class, which may go before it does. The grid and the colours
  /// outlive both.
  GridWindow(HWND window, Grid& grid, std::string name, const ScreenColours& colours);
  ~GridWindow();
  GridWindow(const GridWindow&) = delete;
  GridWindow& operator=(const GridWindow&) = delete;

  HWND window() const { return window_; }
  /// The keyboard is with the grid or one of its fields.
  bool hasFocus() const;
  /// A key before the control with the focus has it, while that is the grid's. Answers whether it
  /// is used up; the window that the grid lies in asks before its own keys.
  bool keyDown(int keyCode, int shift);
  /// The grid or its table changed: puts on the screen what it is now.
  void show();
  void scrollWheel(int notches);

 private:
  struct Look;

  friend WindowBase<GridWindow>;
  bool handle(UINT message, WPARAM wParam, LPARAM lParam, LRESULT& result);
  bool scrolled(UINT message, WPARAM wParam);
  bool commanded(int part, int notice);
  bool notified(const NMHDR& notice, LRESULT& result);
  bool clicked(POINT at, bool twice);
  bool typed(WPARAM unit);
  void wheelTurned(int delta);
  void foldList();
  bool partMessage(HWND part, UINT message, WPARAM wParam, LPARAM lParam, LRESULT& result);

  HWND makePart(Part part, const wchar_t* windowClass, DWORD style);
  HWND makeEntry(bool right);
  void setFont(HFONT font);
  void layOut();
  void showHeader();
  void showScroll();
  void showScrolled(GridRow before);
  void showEntry();
  void alignEntry(bool right);
  void showList();
  void speak();
  void bringColumnIntoView();

  void openFind();
  void closeFind();
  bool findKey(int keyCode, int shift);
  void findFrom(Grid::Find from);

  void paint() const;
  void paintRow(const class Painting& on, GridRow row, const Look& look) const;
  void paintCell(const class Painting& on, GridCell cell, const RECT& area, const Look& look) const;
  void paintText(HDC dc, RECT inside, COLORREF colour, GridCell cell) const;
  int scaled(int length) const;
  int rowHeight() const { return rowHeight_; }
  int columnLeft(int column) const;
  int columnWidth(int column) const;
  RECT cellArea(GridCell cell) const;
  RECT buttonArea(const RECT& cell) const;
  /// Height of what lies between header and find field.
  int rowsHeight() const;

  HWND window_;
  Grid& grid_;
  std::string name_;
  const ScreenColours& colours_;
  HWND header_, entry_, list_, findLabel_, findField_;
  std::unique_ptr<ToolTips> tips_;
  HFONT font_ = nullptr;
  UINT resolution_ = 96;  ///< at which it is laid out
  int rowHeight_ = 18;
  int widestCharacter_ = 12;
  int headerHeight_ = 20;
  int left_ = 0;  ///< pixels that are scrolled off to the left
  int wheelRest_ = 0;
  wchar_t highSurrogate_ = 0;
  bool entryShown_ = false, listShown_ = false;
  bool listPressed_ = false;  ///< the mouse went down in the pick list
  bool finding_ = false;
  bool showing_ = false;  ///< inside show(): what the parts tell is no hand's doing
  GridCell spokenCell_{~GridRow{0}, -1};
  std::string spoken_;
};

}  // namespace kelvane::win32
