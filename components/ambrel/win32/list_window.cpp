#include "components/ambrel/win32/list_window.h"

#include <utility>

#include "components/ambrel/win32/dialog_ids.h"

namespace kelvane::ambrel {

ListWindow::ListWindow(const Frame& frame, AmbrelCore& core)
    : DialogWindow(frame), core_(core), wake_(waker()) {}

void ListWindow::addRows(int id, const char* name, const win32::DialogArea& area,
                         win32::VirtualRows::Cell cell) {
  listControl_ = add({id, WC_LISTVIEWW, win32::VirtualRows::kStyle, name, area, "",
                      win32::Widen | win32::Heighten});
  rows_.emplace(listControl_, std::move(cell));
}

void ListWindow::addStatus(const win32::DialogArea& area, DWORD style) {
  add({id::Status, WC_STATICW, SS_NOPREFIX | style, "", area, "", win32::Widen | win32::MoveDown,
       "", true});
}

void ListWindow::follow() {
  if (window() && !std::exchange(refreshPending_, true)) wake_();
}

void ListWindow::tick() {
  refreshPending_ = false;
  look();
}

void ListWindow::command(int control, int) {
  if (control == IDOK) return tune();
  if (control == IDCANCEL) return close();
}

bool ListWindow::notified(const NMHDR& notice, LRESULT& result) {
  if (notice.hwndFrom != listControl_ || !rows_) return false;
  if (notice.code != NM_DBLCLK) return rows_->answer(notice, result);
  tune();
  return true;
}

void ListWindow::laidOut() {
  if (rows_) rows_->place(static_cast<UINT>(scaled(96)));
}

}  // namespace kelvane::ambrel
