#include "win32/overview_window.h"

#include <oleacc.h>
#include <windowsx.h>

#include <algorithm>
#include <utility>

#include "gui/win32/accessible.h"
#include "gui/win32/window_barrier.h"
#include "ui/control_ids.h"
#include "ui/key_codes.h"
#include "win32/paint.h"
#include "win32/text.h"

namespace kelvane::win32 {

namespace {

constexpr wchar_t kRowClass[] = L"KelvaneOverviewRow";
constexpr int kOverviewWidth = 990, kHeadHeight = 28, kRowHeight = 38, kFootHeight = 44;
constexpr int kUsualRows = 4;
/// The columns' widths that stay the same however wide the window is, 96ths of an inch.
constexpr int kLevelWidth = 140, kReadingWidth = 62, kMinuteWidth = 104, kMovedWidth = 148;
constexpr int kNameLeft = 30, kFrequencyLeft = 130, kModeLeft = 278, kStationLeft = 372;

ViewWindow::Design design() {
  return {L"KelvaneOverview",
          "All receivers",
          kOverviewWidth,
          kHeadHeight + kUsualRows * kRowHeight + kFootHeight,
          760,
          kHeadHeight + kRowHeight + kFootHeight};
}

}  // namespace

OverviewWindow::OverviewWindow(HWND owner, Overview& overview)
    : ViewWindow(owner, design(), [&overview] { return overview.colours(); }), overview_(overview) {
  addButton(id::AllOnTop, "Keep on &top", "Keep this window above all others");
  addButton(id::AllTakeBack, "Take &back", "Take back the last copy of a setting (Ctrl+Z)");
  makeFont();
  setOnTop(overview_.onTop());
  makeRows(overview_.rows());
}

OverviewWindow::~OverviewWindow() { DeleteObject(digits_); }

void OverviewWindow::makeFont() {
  DeleteObject(digits_);
  digits_ = CreateFontW(-px(19), 0, 0, 0, FW_BOLD, FALSE, FALSE, FALSE, DEFAULT_CHARSET,
                        OUT_DEFAULT_PRECIS, CLIP_DEFAULT_PRECIS, CLEARTYPE_QUALITY, DEFAULT_PITCH,
                        textFont());
}

void OverviewWindow::lookChanged() { makeFont(); }

void OverviewWindow::makeRows(int count) {
  while (static_cast<int>(rows_.size()) > count) {
    const HWND gone = rows_.back().window;
    rows_.pop_back();
    DestroyWindow(gone);
  }
  while (static_cast<int>(rows_.size()) < count) {
    const int number = static_cast<int>(rows_.size());
    Row row;
    row.part = std::make_unique<RowWindow>(
        *this,
        RowWindow::Made{window(), kRowClass, IDC_ARROW, L"", WS_TABSTOP, id::AllRow + number});
    row.window = row.part->window();
    giveRole(row.window, ROLE_SYSTEM_LISTITEM);
    rows_.push_back(std::move(row));
  }
  needHeight(kHeadHeight + std::max(count, 1) * kRowHeight + kFootHeight);
}

void OverviewWindow::layOut(int width, int height) {
  columns_.number = px(12);
  columns_.name = px(kNameLeft);
  columns_.frequency = px(kFrequencyLeft);
  columns_.mode = px(kModeLeft);
  columns_.station = px(kStationLeft);
  columns_.end = width - px(8);
  columns_.moved = columns_.end - px(kMovedWidth);
  columns_.minute = columns_.moved - px(kMinuteWidth + 10);
  columns_.reading = columns_.minute - px(kReadingWidth + 6);
  columns_.level = columns_.reading - px(kLevelWidth + 6);
  int top = px(kHeadHeight);
  for (const Row& row : rows_) {
    SetWindowPos(row.window, nullptr, 0, top, width, px(kRowHeight), SWP_NOZORDER | SWP_NOACTIVATE);
    InvalidateRect(row.window, nullptr, FALSE);
    top += px(kRowHeight);
  }
  const int button = height - px(8) - px(28);
  place(id::AllTakeBack, width - px(8) - px(90), button, px(90), px(28));
  place(id::AllOnTop, width - px(16) - px(190), button, px(100), px(28));
}

void OverviewWindow::refresh() {
  const int count = overview_.rows();
  if (count != static_cast<int>(rows_.size())) {
    makeRows(count);
    RECT area{};
    GetClientRect(window(), &area);
    layOut(area.right, area.bottom);
    InvalidateRect(window(), nullptr, FALSE);
  }
  for (int row = 0; row < count; ++row) showRow(row, overview_.row(static_cast<Index>(row)));
  setToggle(id::AllOnTop, "Keep on &top", overview_.onTop());
  setEnabled(id::AllTakeBack, overview_.canTakeBack());
  showStatus();
}

void OverviewWindow::showStatus() {
  std::string now = overview_.statusLine();
  if (now == status_) return;
  status_ = std::move(now);
  RECT strip{};
  GetClientRect(window(), &strip);
  strip.top = strip.bottom - px(kFootHeight);
  InvalidateRect(window(), &strip, FALSE);
}

RECT OverviewWindow::cell(int left, int right) const { return {left, 0, right, px(kRowHeight)}; }

/// Only the cells whose values differ are painted anew.
void OverviewWindow::showRow(int number, const OverviewRow& now) {
  Row& row = rows_[static_cast<std::size_t>(number)];
  OverviewRow& was = row.shown;
  const auto changed = [&row](const RECT& area) { InvalidateRect(row.window, &area, FALSE); };
  const Columns& at = columns_;
  if (was.shown != now.shown || was.online != now.online || was.link != now.link ||
      was.remote != now.remote || was.name != now.name) {
    InvalidateRect(row.window, nullptr, FALSE);
  } else {
    if (was.frequency != now.frequency || was.entry != now.entry)
      changed(cell(at.frequency, at.mode));
    if (was.mode != now.mode || was.settings != now.settings) changed(cell(at.mode, at.station));
    if (was.station != now.station) changed(cell(at.station, at.level));
    // What changes most lies side by side: one piece of the window.
    const bool words = was.reading != now.reading || was.squelch != now.squelch;
    if (words || was.bar != now.bar) changed(cell(at.level, words ? at.minute : at.reading));
    if (was.minute != now.minute) changed(cell(at.minute, at.moved));
    if (was.movedBy != now.movedBy) changed(cell(at.moved, at.end));
  }
  was = now;
  std::string spoken = spokenRow(number + 1, now);
  if (spoken == row.spoken) return;
  row.spoken = std::move(spoken);
  SetWindowTextW(row.window, wide(row.spoken).c_str());
  speakAs(row.window, row.spoken);
}

void OverviewWindow::command(int id) {
  if (id == id::AllOnTop) {
    overview_.setOnTop(!overview_.onTop());
    setOnTop(overview_.onTop());
  } else if (id == id::AllTakeBack) {
    overview_.takeBack();
  }
  refresh();
}

bool OverviewWindow::keyDown(int keyCode, int shift) {
  const int row = rowOf(GetFocus());
  const int last = static_cast<int>(rows_.size()) - 1;
  int wanted = -1;
  if (row >= 0 && shift == 0) {
    if (keyCode == key::Up) wanted = std::max(row - 1, 0);
    if (keyCode == key::Down) wanted = std::min(row + 1, last);
    if (keyCode == key::Home) wanted = 0;
    if (keyCode == key::End) wanted = last;
  }
  if (wanted >= 0) {
    SetFocus(rows_[static_cast<std::size_t>(wanted)].window);
    return true;
  }
  if (!overview_.keyDown(keyCode, shift)) return false;
  refresh();
  return true;
}

bool OverviewWindow::keyPress(int character) {
  if (character == key::Escape && dragging_) {
    ReleaseCapture();
    return true;
  }
  if (!overview_.keyPress(character)) return false;
  refresh();
  return true;
}

HWND OverviewWindow::startOfKeys() const {
  const int row = std::max(overview_.focused(), 0);
  if (row < static_cast<int>(rows_.size())) return rows_[static_cast<std::size_t>(row)].window;
  return rows_.empty() ? item(id::AllOnTop) : rows_.front().window;
}

ViewWindow::Frame OverviewWindow::startFrame(Global::Point owner) const {
  const WindowPlace place = overview_.startPlace(owner);
  return {place.at, place.width, place.height};
}

void OverviewWindow::leftAt(const Frame& frame) {
  overview_.leftAt({frame.at, frame.width, frame.height});
}

int OverviewWindow::rowOf(HWND window) const {
  const auto found = std::ranges::find(rows_, window, &Row::window);
  return found == rows_.end() ? -1 : static_cast<int>(found - rows_.begin());
}

int OverviewWindow::rowAt(POINT screen) const { return rowOf(WindowFromPoint(screen)); }

bool OverviewWindow::rowMessage(HWND window, UINT message, WPARAM wParam, LPARAM lParam,
                                LRESULT& result) {
  const int row = rowOf(window);
  if (row < 0) return false;
  POINT at{GET_X_LPARAM(lParam), GET_Y_LPARAM(lParam)};
  switch (message) {
    case WM_PAINT:
      paintRow(window, row);
      return true;
    case WM_ERASEBKGND:
      result = 1;
      return true;
    case WM_SETFOCUS:
    case WM_KILLFOCUS:
      if (message == WM_SETFOCUS) overview_.focus(row);
      typing_ = message == WM_SETFOCUS ? row : -1;
      InvalidateRect(window, nullptr, FALSE);
      refresh();
      return true;
    case WM_LBUTTONDOWN:
      pressed_ = row;
      SetFocus(window);
      SetCapture(window);
      return true;
    case WM_MOUSEMOVE:
      if (pressed_ != row) return false;
      ClientToScreen(window, &at);
      drag(at);
      return true;
    case WM_LBUTTONUP:
      if (pressed_ != row) return false;
      ClientToScreen(window, &at);
      drop(at);
      return true;
    case WM_CAPTURECHANGED:
      endDrag();
      return true;
    case WM_MOUSEWHEEL: {
      // Some systems send it to the window under the pointer, some to the one with the focus.
      const int under = rowAt(at);
      if (under < 0) return true;
      ScreenToClient(rows_[static_cast<std::size_t>(under)].window, &at);
      if (at.x >= columns_.frequency && at.x < columns_.mode)
        overview_.wheel(under, GET_WHEEL_DELTA_WPARAM(wParam));
      refresh();
      return true;
    }
    default:
      return partMessage(message, wParam);
  }
}

/// The row that it would be dropped on has a frame, and the last line says what that does.
void OverviewWindow::drag(POINT screen) {
  const int over = rowAt(screen);
  if (over != pressed_) dragging_ = true;
  if (!dragging_) return;
  const int before = std::exchange(target_, over == pressed_ ? -1 : over);
  SetCursor(LoadCursorW(nullptr, target_ >= 0 ? IDC_HAND : IDC_NO));
  overview_.dragOver(pressed_, target_);
  for (const int changed : {before, target_}) {
    if (changed >= 0 && changed < static_cast<int>(rows_.size()) && before != target_)
      InvalidateRect(rows_[static_cast<std::size_t>(changed)].window, nullptr, FALSE);
  }
  showStatus();
}

/// A press and its release on one row shows the receiver; from one row to another it copies.
void OverviewWindow::drop(POINT screen) {
  const int from = pressed_, to = rowAt(screen);
  const bool dragged = dragging_;
  // Ends the drag: the capture is gone.
  ReleaseCapture();
  if (!dragged && to == from) overview_.show(to);
  if (dragged && to >= 0 && to != from) overview_.copy(from, to);
  refresh();
}

void OverviewWindow::endDrag() {
  pressed_ = -1;
  const int target = std::exchange(target_, -1);
  if (!std::exchange(dragging_, false)) return;
  overview_.dragEnded();
  if (target >= 0 && target < static_cast<int>(rows_.size()))
    InvalidateRect(rows_[static_cast<std::size_t>(target)].window, nullptr, FALSE);
  showStatus();
}

}  // namespace kelvane::win32
