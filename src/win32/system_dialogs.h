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
    makeAnew(channels_, editor);
    channels_->showModeless();
  }
  void showLog(DataLog& log) override {
    makeAnew(log_, log);
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
    makeAnew(stations_, editor);
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
  /// Where there is none, or it was closed. The old one goes first: it tells what it showed that
  /// nobody shows it any more.
  template <class Window, class Shown>
  void makeAnew(std::unique_ptr<Window>& window, Shown& shown) {
    if (window && window->window()) return;
    window.reset();
    window = std::make_unique<Window>(owner_, shown, colours_);
  }

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
