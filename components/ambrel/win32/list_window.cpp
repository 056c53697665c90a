#include "components/ambrel/win32/list_window.h"

#include <utility>

namespace kelvane::ambrel {

ListWindow::ListWindow(const Frame& frame, AmbrelCore& core)
    : DialogWindow(frame), core_(core), wake_(waker()) {}

void ListWindow::addRows(const win32::DialogItem& list, win32::VirtualRows::Cell cell) {
  listControl_ = add(list);
  rows_.emplace(listControl_, std::move(cell));
}

void ListWindow::follow() {
  if (window() && !std::exchange(toLook_, true)) wake_();
}

void ListWindow::tick() {
  toLook_ = false;
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
