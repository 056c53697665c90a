#pragma once

#include <windows.h>

#include <memory>
#include <vector>

#include "base/win32/posted_wake.h"
#include "gui/win32/tool_tips.h"
#include "gui/win32/window_base.h"
#include "panel/main_window.h"
#include "win32/meter_strip.h"
#include "win32/panel_control.h"
#include "win32/tab_strip.h"

namespace kelvane::win32 {

/// The main window on the screen: makes the controls, forwards what the hand does, and shows the
/// panel's values, at most once a frame.
class PanelWindow : public WindowCommands, private ControlEvents, private WindowBase<PanelWindow> {
 public:
  explicit PanelWindow(HINSTANCE instance);
  ~PanelWindow() override;

  HWND window() const { return window_; }
  /// What all of the program's windows are drawn with.
  const ScreenColours& colours() const { return colours_; }
  /// Puts the panel into the window, at its place, and shows it. The panel must outlive the window.
  void present(MAin& panel);
  /// Gives the controls their tips and tells screen readers their names; the second half of
  /// present.
  void explain();
  /// Something may have changed outside the window's own messages.
  void changed();
  /// From any thread: work beside the window has ended, and the panel is told of it soon.
  void wakeWork() { workWake_->post(); }
  /// Runs until the window is closed.
  int run();

  void focus(int control) override;
  bool active() const override;
  void beep() override;
  void runPending() override;
  void close() override;
  bool modalOpen() const override;
  std::int32_t handle() const override;

 private:
  enum TimerId : UINT_PTR { kTick = 1, kFrame = 2 };

  /// Hears each message that the thread takes, whichever loop and window it is for.
  static LRESULT CALLBACK noteHand(int code, WPARAM wParam, LPARAM lParam);
  friend WindowBase<PanelWindow>;
  bool handle(UINT message, WPARAM wParam, LPARAM lParam, LRESULT& result);
  bool command(UINT message, WPARAM wParam, LPARAM lParam, LRESULT& result);

  void gotFocus(int control) override;
  void lostFocus(int control) override;
  void keyDown(int control, int keyCode, int shift) override;
  void keyPress(int control, int character) override;
  void clicked(int control, MouseButton button) override;

  static bool wheelPresent();
  /// Keys and the wheel, before the control that they are for. Answers whether they were taken.
  bool preview(const MSG& message);
  void show();
  void schedule();
  void raiseAboveTabs() const;
  void layOut(UINT dpi);
  void applyLook(UINT dpi, const Fonts& fonts);
  void erase(HDC to) const;
  void moveToStart();
  void noteMove();
  bool tabNotified(const NMHDR& notice);
  Placement placement() const;
  UINT resolution() const;
  void settingsChanged();
  void choose(ColourChoice choice);
  void dpiChanged(UINT dpi, const RECT& suggested);
  bool systemCommand(WPARAM command, LPARAM lParam);
  void endByOperator();
  void unload(Ending how);
  void comeForward();

  HWND window_;
  HHOOK inputHook_ = nullptr;
  RECT place_{};  ///< on the screen, minimised or not
  std::unique_ptr<PostedWake> workWake_;
  std::unique_ptr<Fonts> fonts_;
  UINT laidOutAt_ = 96;
  std::unique_ptr<TabStrip> tabs_;
  std::unique_ptr<MeterStrip> meter_;
  std::vector<std::unique_ptr<PanelControl>> panelControls_;
  std::unique_ptr<ToolTips> tips_;
  /// Looked for once: without a wheel its messages are nobody's.
  const bool wheelPresent_ = wheelPresent();
  bool described_ = false;  ///< the controls have their tips and names
  MAin* panel_ = nullptr;
  MainView presented_;
  Instant scheduled_ = kNever;
  ULONGLONG lastFrame_ = 0;
  bool frameWaits_ = false;
  bool pumping_ = false;
  bool asking_ = false;  ///< whether the program may end
  bool onTop_ = false;
  ColourChoice choice_ = ColourChoice::AsSystem;
  ScreenColours colours_;
  std::string caption_;
};

}  // namespace kelvane::win32
