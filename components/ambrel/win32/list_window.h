#pragma once

#include <functional>
#include <optional>

#include "components/ambrel/ambrel_core.h"
#include "gui/win32/dialog_window.h"
#include "gui/win32/virtual_rows.h"

namespace kelvane::ambrel {

/// A window of the component around one list. Stays open beside the panel.
class ListWindow : public win32::DialogWindow {
 public:
  /// What the window shows may be another now: it looks soon, once for all that changed until then.
  void follow();

 protected:
  ListWindow(const Frame& frame, AmbrelCore& core);

  /// Adds the list, which grows with the window and whose texts are asked for by `cell`; to be
  /// called once, while the window is made.
  void addRows(int id, const char* name, const win32::DialogArea& area,
               win32::VirtualRows::Cell cell);
  /// Adds the text below the list that screen readers say when it changes.
  void addStatus(const win32::DialogArea& area, DWORD style = 0);
  win32::VirtualRows& rows() { return *rows_; }

  /// Shows what is there now.
  virtual void look() = 0;
  /// Tunes the receiver to the selected row, where the rows have frequencies.
  virtual void tune() {}
  void command(int control, int notice) override;
  bool notified(const NMHDR& notice, LRESULT& result) override;
  void laidOut() override;
  void resized() override { laidOut(); }

  AmbrelCore& core_;

 private:
  void tick() final;

  std::function<void()> wake_;
  bool refreshPending_ = false;  ///< a tick is on its way
  HWND listControl_ = nullptr;
  std::optional<win32::VirtualRows> rows_;
};

}  // namespace kelvane::ambrel
