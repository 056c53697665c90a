#pragma once

#include <memory>

#include "panel/main_window.h"
#include "win32/channel_dialog.h"
#include "win32/config_dialog.h"
#include "win32/help_window.h"
#include "win32/log_window.h"
#include "win32/overview_window.h"
#include "win32/station_dialog.h"
#include "win32/traces_window.h"

namespace kelvane::win32 {

/// The main window's dialogs, over its window.
class SystemDialogs : public PanelDialogs {
 public:
  SystemDialogs(HWND owner, const ScreenColours& colours) : owner_(owner), colours_(colours) {}

  void showConfig(Config& config) override { ConfigDialog(owner_, config).runModal(); }
  void showHelp(MiniHelp& help) override {
    if (!help_) help_ = std::make_unique<HelpWindow>(owner_, help);
    help_->show();
  }
  void showChannel(ChannelEditor& editor) override {
    if (!channels_ || !channels_->window()) {
      // The old one goes first: it tells the editor that nobody shows it any more.
      channels_.reset();
      channels_ = std::make_unique<ChannelDialog>(owner_, editor, colours_);
    }
    channels_->showModeless();
  }
  void showLog(DataLog& log) override {
    if (!log_ || !log_->window()) {
      log_.reset();
      log_ = std::make_unique<LogWindow>(owner_, log, colours_);
    }
    log_->present();
  }
  void showOverview(Overview& overview) override {
    if (!overview_) overview_ = std::make_unique<OverviewWindow>(owner_, overview);
    overview_->present(ViewWindow::Keys::Take);
  }
  void showTraces(Traces& traces, Keys keys) override {
    if (!traces_) traces_ = std::make_unique<TracesWindow>(owner_, traces);
    traces_->present(keys == Keys::Take ? ViewWindow::Keys::Take : ViewWindow::Keys::Leave);
  }
  void showStations(StationEditor& editor) override {
    if (!stations_ || !stations_->window()) {
      stations_.reset();
      stations_ = std::make_unique<StationDialog>(owner_, editor, colours_);
    }
    stations_->present();
  }

  /// Before the panel goes: the windows tell its models that nobody shows them any more.
  void end() {
    channels_.reset();
    help_.reset();
    log_.reset();
    overview_.reset();
    traces_.reset();
    stations_.reset();
  }

 private:
  HWND owner_;
  const ScreenColours& colours_;
  std::unique_ptr<ChannelDialog> channels_;
  std::unique_ptr<HelpWindow> help_;
  std::unique_ptr<LogWindow> log_;
  std::unique_ptr<OverviewWindow> overview_;
  std::unique_ptr<TracesWindow> traces_;
  std::unique_ptr<StationDialog> stations_;
};

}  // namespace kelvane::win32
