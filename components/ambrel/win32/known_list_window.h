#pragma once

#include "components/ambrel/stations/known_list.h"
#include "components/ambrel/win32/list_window.h"

namespace kelvane::ambrel {

/// The list of known frequencies on the screen: found by typing, sorted by any column, and tuned to
/// by Enter. Stays open beside the panel.
class KnownListWindow final : public ListWindow {
 public:
  KnownListWindow(HWND owner, AmbrelCore& core);

 private:
  void makeControls();
  void command(int control, int notice) override;
  bool notified(const NMHDR& notice, LRESULT& result) override;
  bool keyDown(int keyCode, int shift) override;
  void look() override;
  void tune() override;

  void ask();
  void sortBy(ListColumn column);
  void showRows();
  void showStatus();

  KnownList list_;
  KnownList::Station chosen_;  ///< the row that the operator went to
  bool filling_ = false;
  bool tuneWhenFound_ = false;
};

}  // namespace kelvane::ambrel
