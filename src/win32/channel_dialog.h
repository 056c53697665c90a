#pragma once

#include <memory>

#include "companions/channel_editor.h"
#include "gui/win32/dialog_window.h"
#include "win32/grid_window.h"

namespace kelvane::win32 {

/// The window `Channel` on the screen.
class ChannelDialog : public DialogWindow {
 public:
  ChannelDialog(HWND owner, ChannelEditor& editor, const ScreenColours& colours);
  ~ChannelDialog() override;

 private:
  void makeButtons();
  void show();
  void showSoon();

  void command(int control, int notice) override;
  bool keyDown(int keyCode, int shift) override;
  bool wheel(int notches) override;
  void tick() override;
  int defaultButton() const override { return 0; }
  bool waiting() const override { return editor_.view().hourglass; }
  POINT place(SIZE size, POINT overOwner) const override;

  HWND owner_;
  ChannelEditor& editor_;
  std::unique_ptr<GridWindow> grid_;
  std::string caption_;
  bool hourglass_ = false;      ///< is shown
  bool changePending_ = false;  ///< a change waits for the next frame
};

}  // namespace kelvane::win32
