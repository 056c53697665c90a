#pragma once

#include "components/ambrel/stations/known_list.h"
#include "gui/win32/dialog_window.h"
#include "gui/win32/virtual_rows.h"

namespace kelvane::ambrel {

/// The list of known frequencies on the screen: found by typing, sorted by any column, and tuned to
/// by Enter. Stays open beside the panel.
class KnownListWindow final : public win32::DialogWindow {
 public:
  KnownListWindow(HWND owner, AmbrelCore& core);

 private:
  void makeControls();
  void command(int control, int notice) override;
  bool notified(const NMHDR& notice, LRESULT& result) override;
  bool keyDown(int keyCode, int shift) override;
  void tick() override;
  void laidOut() override;
  void resized() override;

  void ask();
  void sortBy(ListColumn column);
  void showRows();
  void showStatus();
  void tune();

  AmbrelCore& core_;
  KnownList list_;
  win32::VirtualRows rows_;
  KnownList::Station chosen_;  ///< the row that the operator went to
  bool filling_ = false;
  bool tuneWhenFound_ = false;
};

}  // namespace kelvane::ambrel
