#pragma once

#include "components/ambrel/data_table.h"
#include "gui/win32/dialog_window.h"
#include "gui/win32/virtual_rows.h"

namespace kelvane::ambrel {

/// The database on the screen, a table at a time: the band plan and each set. The row where the
/// receiver is stays selected as it is tuned, if the operator wants it so. Stays open beside the
/// panel.
class DataWindow final : public win32::DialogWindow {
 public:
  DataWindow(HWND owner, AmbrelCore& core);

 private:
  void makeControls();
  void command(int control, int notice) override;
  bool notified(const NMHDR& notice, LRESULT& result) override;
  void tick() override;
  void laidOut() override;
  void resized() override;

  void showTables();
  void showTable();
  void goToReceiver();
  void tune();

  AmbrelCore& core_;
  DataTable data_;
  win32::VirtualRows rows_;
  Hz gone_ = -1;  ///< the receiver's frequency whose row was last selected
};

}  // namespace kelvane::ambrel
