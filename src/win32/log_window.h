#pragma once

#include <memory>

#include "companions/data_log.h"
#include "gui/win32/dialog_window.h"
#include "win32/grid_window.h"
#include "win32/log_import_dialog.h"

namespace kelvane::win32 {

/// The station log on the screen, from being opened to being closed.
class LogWindow : public DialogWindow {
 public:
  LogWindow(HWND owner, DataLog& log, const ScreenColours& colours);
  ~LogWindow() override;

  /// Shows the window, with the keyboard in the grid, and what the log has become.
  void present();

 private:
  void make(const ScreenColours& colours);
  void show();

  void command(int control, int notice) override;
  bool keyDown(int keyCode, int shift) override;
  bool wheel(int notches) override;
  void fileDropped(const std::wstring& name) override;

  void showImport();

  DataLog& log_;
  const ScreenColours& colours_;
  std::unique_ptr<GridWindow> grid_;
  std::unique_ptr<LogImportDialog> import_;
  DataLogView shown_;
};

}  // namespace kelvane::win32
