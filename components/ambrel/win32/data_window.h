#pragma once

#include "components/ambrel/data_table.h"
#include "components/ambrel/win32/list_window.h"

namespace kelvane::ambrel {

/// The database on the screen, a table at a time: the band plan and each set. The row where the
/// receiver is stays selected as it is tuned, if the operator wants it so. Stays open beside the
/// panel.
class DataWindow final : public ListWindow {
 public:
  DataWindow(HWND owner, AmbrelCore& core);

 private:
  void makeControls();
  void command(int control, int notice) override;
  void look() override;
  void tune() override;

  void showTables();
  void showTable();
  void goToReceiver();

  DataTable data_;
  Hz gone_ = -1;  ///< the receiver's frequency whose row was last selected
};

}  // namespace kelvane::ambrel
