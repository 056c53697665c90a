#include "win32/log_window.h"

#include <algorithm>
#include <utility>

#include "ui/control_ids.h"
#include "win32/text.h"

namespace kelvane::win32 {

namespace {

constexpr int kLogWidth = 880, kLogHeight = 520, kLogEdge = 8;
constexpr int kLogButtonWidth = 84, kLogButtonHeight = 26, kLogButtonStep = kLogButtonWidth + 8;
constexpr int kLogButtonTop = kLogHeight - kLogEdge - kLogButtonHeight;
constexpr int kNoticeHeight = 18, kNoticeTop = kLogButtonTop - 6 - kNoticeHeight;

HINSTANCE moduleOf(HWND window) {
  return reinterpret_cast<HINSTANCE>(GetWindowLongPtrW(window, GWLP_HINSTANCE));
}

}  // namespace

LogWindow::LogWindow(HWND owner, DataLog& log, const ScreenColours& colours)
    : DialogWindow({L"KelvaneLog", log.view().caption, owner, kLogWidth, kLogHeight}),
      log_(log),
      colours_(colours) {
  GridWindow::registerClass(moduleOf(window()));
  make(colours);
  takeFiles();
  log_.setListener([this] { show(); });
}

LogWindow::~LogWindow() { log_.setListener({}); }

void LogWindow::make(const ScreenColours& colours) {
  const HWND grid =
      add({id::PadGrd,
           GridWindow::kClass,
           GridWindow::kStyle | WS_BORDER,
           "",
           {kLogEdge, kLogEdge, kLogWidth - 2 * kLogEdge, kNoticeTop - kLogEdge - 6}});
  grid_ = std::make_unique<GridWindow>(grid, log_.PadGrd(), "Station log", colours);
  add({id::PadNotice,
       WC_STATICW,
       SS_NOPREFIX | SS_ENDELLIPSIS | SS_CENTERIMAGE,
       "",
       {kLogEdge, kNoticeTop, kLogWidth - 2 * kLogEdge, kNoticeHeight},
       "",
       0,
       "",
       true});
  int left = kLogEdge;
  for (const LogButton& row : logButtons()) {
    if (row.id == IDOK) left = kLogWidth - kLogEdge - 2 * kLogButtonStep + 8;
    const Control& button = log_.view().*row.button;
    add({row.id,
         WC_BUTTONW,
         (row.id == IDOK ? BS_DEFPUSHBUTTON : BS_PUSHBUTTON) | DWORD{WS_TABSTOP},
         button.text,
         {left, kLogButtonTop, kLogButtonWidth, kLogButtonHeight},
         button.tip});
    left += kLogButtonStep;
  }
}

void LogWindow::present() {
  showModeless();
  show();
  SetFocus(item(id::PadGrd));
}

void LogWindow::show() {
  const DataLogView& view = log_.view();
  if (!view.open) return close();
  grid_->show();
  showImport();
  if (std::exchange(shown_, view) == view) return;
  SetWindowTextW(window(), wide(view.caption).c_str());
  setText(id::PadNotice, view.Notice);
  setTip(id::PadNotice, view.Notice);
  setCaptionTip(view.captionTip);
  for (const LogButton& row : logButtons()) enable(row.id, (view.*row.button).enabled);
}

void LogWindow::showImport() {
  if (import_ && import_->window()) import_->show();
  if (!log_.import() || (import_ && import_->window())) return;
  import_ = std::make_unique<LogImportDialog>(window(), log_, colours_);
  import_->showModeless();
}

void LogWindow::fileDropped(const std::wstring& name) {
  if (!name.empty()) log_.importFile(name);
  show();
}

void LogWindow::command(int control, int) {
  // The window's corner, and Escape: nothing but the button drops edits.
  if (control == IDCANCEL) control = IDOK;
  const auto row = std::ranges::find(logButtons(), control, &LogButton::id);
  if (row == logButtons().end()) return;
  (log_.*row->click)();
  // Its comment can be typed at once.
  if (control == id::PadInsert) SetFocus(item(id::PadGrd));
  show();
}

bool LogWindow::keyDown(int keyCode, int shift) {
  const bool taken = grid_->hasFocus() && grid_->keyDown(keyCode, shift);
  if (taken) show();
  return taken;
}

bool LogWindow::wheel(int notches) {
  grid_->scrollWheel(notches);
  return true;
}

}  // namespace kelvane::win32
