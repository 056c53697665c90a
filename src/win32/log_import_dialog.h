#pragma once

#include <memory>

#include "companions/data_log.h"
#include "gui/win32/dialog_window.h"
#include "win32/grid_window.h"

namespace kelvane::win32 {

/// What an import into the station log would do, on the screen over its window.
class LogImportDialog : public DialogWindow {
 public:
  LogImportDialog(HWND owner, DataLog& log, const ScreenColours& colours);

  /// Shows what the log has on its way now; closes where that is nothing, or another one.
  void show();

 private:
  void command(int control, int notice) override;
  bool keyDown(int keyCode, int shift) override;
  bool wheel(int notches) override;

  DataLog& log_;
  const std::shared_ptr<LogImport> import_;
  std::unique_ptr<GridWindow> grid_;
};

}  // namespace kelvane::win32
