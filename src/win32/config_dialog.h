#pragma once

#include "base/win32/dialog_window.h"
#include "shell/main_window.h"
#include "win32/help_window.h"
#include "win32/log_window.h"
#include "win32/message_boxes.h"

namespace kelvane::win32 {

/// The options dialog on the screen, for as long as it is shown once.
class ConfigDialog : public DialogWindow {
 public:
  ConfigDialog(HWND owner, Config& config);
  ~ConfigDialog() override;

 private:
  void makeGeneral();
  void makeButtons();
  void show();
  void showTabs();
  void confirm();

  void command(int control, int notice) override;
  bool notified(const NMHDR& notice, LRESULT& result) override;
  bool keyDown(int keyCode, int shift) override;
  bool accelerator(wchar_t character) override;
  HBRUSH ground(int control) const override;

  Config& config_;
  TabRow shown_;
  std::wstring tip_;
};

/// The main window's dialogs, over its window.
class SystemDialogs : public PanelDialogs {
 public:
  explicit SystemDialogs(HWND owner) : owner_(owner) {}

  void showConfig(Config& config) override { ConfigDialog(owner_, config).runModal(); }
  void showHelp(MiniHelp& help) override {
    if (!help_) help_ = std::make_unique<HelpWindow>(owner_, help);
    help_->show();
  }
  void showLog(DataLog& log) override {
    if (!log_ || !log_->window()) log_ = std::make_unique<LogWindow>(owner_, log);
    log_->present();
  }
  void tell(const std::string& words) override {
    SystemMessageBoxes(owner_).show(words, "", Buttons::Ok);
  }

 private:
  HWND owner_;
  std::unique_ptr<HelpWindow> help_;
  std::unique_ptr<LogWindow> log_;
};

}  // namespace kelvane::win32
