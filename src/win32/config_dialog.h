#pragma once

#include "gui/win32/dialog_window.h"
#include "panel/main_window.h"

namespace kelvane::win32 {

/// The options dialog on the screen, for as long as it is shown once.
class ConfigDialog : public DialogWindow {
 public:
  ConfigDialog(HWND owner, Config& config);
  ~ConfigDialog() override;

 private:
  void makeGeneral();
  void makeColours();
  void makePlace();
  void makeButtons();
  void show();
  void showTabs();
  void confirm();

  void command(int control, int notice) override;
  bool notified(const NMHDR& notice, LRESULT& result) override;
  bool keyDown(int keyCode, int shift) override;
  bool accelerator(wchar_t character) override;
  static bool hasVisualStyle();
  HBRUSH background(int control) const override;
  bool makesRoom() const override;

  Config& config_;
  TabRow shown_;
  std::wstring tip_;
};

}  // namespace kelvane::win32
