#include "win32/channel_dialog.h"

#include <algorithm>
#include <utility>

#include "ui/control_ids.h"
#include "ui/key_codes.h"
#include "win32/text.h"

namespace kelvane::win32 {

namespace {

constexpr int kEdge = 8;
/// As wide as the columns and a scroll bar.
constexpr int kGridWidth = 368, kGridHeight = 396;
constexpr int kButtonWidth = 88, kButtonHeight = 26, kButtonStep = 32;
constexpr int kButtonLeft = kEdge + kGridWidth + kEdge;
constexpr int kWidth = kButtonLeft + kButtonWidth + kEdge;
constexpr int kStatusTop = kEdge + kGridHeight + 6, kStatusHeight = 50;
constexpr int kHeight = kStatusTop + kStatusHeight + 4;
/// Between two changes of the screen while channels stream in, ms.
constexpr UINT kFrame = 16;

/// Set apart: it erases, and the last one closes.
int topOf(int button) {
  const int gap = button >= id::ChnClear ? 16 : 0;
  if (button == id::ChnCancel) return kEdge + kGridHeight - kButtonHeight;
  return kEdge + (button - id::ChnGetIt) * kButtonStep + gap;
}

}  // namespace

ChannelDialog::ChannelDialog(HWND owner, ChannelEditor& editor, const ScreenColours& colours)
    : DialogWindow({L"KelvaneChannel", editor.view().caption, owner, kWidth, kHeight}),
      owner_(owner),
      editor_(editor) {
  GridWindow::registerClass(reinterpret_cast<HINSTANCE>(GetModuleHandleW(nullptr)));
  const HWND grid = add({id::MemGrd,
                         GridWindow::kClass,
                         GridWindow::kStyle | WS_BORDER,
                         "",
                         {kEdge, kEdge, kGridWidth, kGridHeight}});
  grid_ = std::make_unique<GridWindow>(grid, editor_.grid(), "Channels", colours);
  makeButtons();
  editor_.setListener([this] { showSoon(); });
  show();
}

ChannelDialog::~ChannelDialog() { editor_.setListener({}); }

void ChannelDialog::makeButtons() {
  for (const ChannelButton& row : channelButtons()) {
    add({row.id,
         WC_BUTTONW,
         BS_PUSHBUTTON | WS_TABSTOP,
         std::string(row.caption),
         {kButtonLeft, topOf(row.id), kButtonWidth, kButtonHeight},
         std::string(row.tip)});
  }
  add({id::ChnStatus,
       WC_STATICW,
       SS_NOPREFIX,
       "",
       {kEdge, kStatusTop, kWidth - 2 * kEdge, kStatusHeight},
       "",
       0,
       "",
       true});
}

void ChannelDialog::showSoon() {
  // An open window that is not shown yet has no messages to wait for.
  if (!editor_.view().open || !IsWindowVisible(window())) return show();
  if (!std::exchange(changePending_, true)) startTimer(kFrame);
}

void ChannelDialog::tick() {
  if (std::exchange(changePending_, false)) show();
}

void ChannelDialog::show() {
  if (!window()) return;
  const ChannelView& view = editor_.view();
  if (!view.open) return close();
  if (std::exchange(caption_, view.caption) != view.caption)
    SetWindowTextW(window(), wide(view.caption).c_str());
  // While it works no button takes keys: the grid has them, and keeps them afterwards.
  if (view.hourglass && IsChild(window(), GetFocus()) && !grid_->hasFocus())
    SetFocus(grid_->window());
  for (const ChannelButton& row : channelButtons()) enable(row.id, (view.*row.button).enabled);
  setText(id::ChnStatus, view.Status.text);
  grid_->show();
  if (std::exchange(hourglass_, view.hourglass) != view.hourglass) showPointer();
}

void ChannelDialog::command(int control, int notice) {
  if (control == IDCANCEL) return editor_.close();
  if (notice != BN_CLICKED) return;
  editor_.clicked(control);
  if (window()) show();
}

bool ChannelDialog::keyDown(int keyCode, int shift) {
  const bool finds = keyCode == 'F' && shift == key::CtrlHeld;
  if ((finds || grid_->hasFocus()) && grid_->keyDown(keyCode, shift)) return true;
  if (keyCode != key::Esc) return false;
  editor_.escape();
  return true;
}

bool ChannelDialog::wheel(int notches) {
  grid_->scrollWheel(notches);
  return true;
}

POINT ChannelDialog::place(SIZE size, POINT) const {
  RECT over{};
  GetWindowRect(owner_, &over);
  const int dpi = static_cast<int>(GetDpiForWindow(owner_));
  const Global::Point at = ChannelEditor::placed(
      {{over.left, over.top}, {over.right - over.left, over.bottom - over.top}}, {size.cx, size.cy},
      GetSystemMetrics(SM_CYSCREEN), dpi);
  // Where neither has room the caption stays in reach: the window then covers the main one.
  MONITORINFO screen{};
  screen.cbSize = sizeof screen;
  GetMonitorInfoW(MonitorFromWindow(owner_, MONITOR_DEFAULTTONEAREST), &screen);
  return {at.left, std::max<LONG>(at.top, screen.rcWork.top)};
}

}  // namespace kelvane::win32
