#pragma once

#include <memory>
#include <optional>
#include <vector>

#include "gui/win32/part_window.h"
#include "overview/overview.h"
#include "win32/view_window.h"

namespace kelvane::win32 {

class Painting;

/// The overview on the screen. Each row is a window of its own, so that the keyboard goes from row
/// to row and screen readers speak them.
class OverviewWindow : public ViewWindow {
 public:
  OverviewWindow(HWND owner, Overview& overview);
  ~OverviewWindow() override;

 private:
  /// Left edges of the columns, pixels.
  struct Columns {
    int number, name, frequency, mode, station, level, reading, minute, moved, end;
  };

  void layOut(int width, int height) override;
  void refresh() override;
  void paint(HWND window) override;
  void command(int id) override;
  bool keyDown(int keyCode, int shift) override;
  bool keyPress(int character) override;
  HWND startOfKeys() const override;
  Frame startFrame(Global::Point owner) const override;
  void leftAt(const Frame& frame) override;
  void lookChanged() override;

  bool rowMessage(HWND window, UINT message, WPARAM wParam, LPARAM lParam, LRESULT& result);
  using RowWindow = PartWindow<OverviewWindow, &OverviewWindow::rowMessage>;
  struct Row {
    std::unique_ptr<RowWindow> part;
    HWND window = nullptr;
    OverviewRow shown;
    std::string spoken;
  };
  int rowOf(HWND window) const;
  int rowAt(POINT screen) const;
  void makeRows(int count);
  void showRow(int row, const OverviewRow& now);
  void showStatus();
  void drag(POINT screen);
  void drop(POINT screen);
  void endDrag();
  void makeFont();

  void paintRow(HWND window, int row);
  void paintTarget(const Painting& on) const;
  void paintFrequency(const Painting& on, const OverviewRow& row, RECT area) const;
  void paintLevel(const Painting& on, const OverviewRow& row, RECT area) const;
  void paintMinute(const Painting& on, const OverviewRow& row, RECT area) const;
  RECT cell(int left, int right) const;
  Colour ink(const OverviewRow& row, Colour otherwise) const;

  Overview& overview_;
  Columns columns_{};
  std::vector<Row> rows_;
  HFONT digits_ = nullptr;
  std::string status_;
  int typing_ = -1;   ///< the row that has the keyboard
  int pressed_ = -1;  ///< the row that the mouse button went down on
  bool dragging_ = false;
  int target_ = -1;  ///< the other row that a dragged one would be dropped on
};

}  // namespace kelvane::win32
