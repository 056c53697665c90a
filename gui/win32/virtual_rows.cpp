#include "gui/win32/virtual_rows.h"

#include <algorithm>
#include <limits>
#include <utility>

#include "base/win32/utf16.h"

namespace kelvane::win32 {

namespace {

/// Rows that a list view can count.
constexpr std::size_t kMostRows = 100'000'000;

}  // namespace

VirtualRows::VirtualRows(HWND list, Cell cell) : list_(list), cell_(std::move(cell)) {
  ListView_SetExtendedListViewStyle(
      list, LVS_EX_FULLROWSELECT | LVS_EX_LABELTIP | LVS_EX_DOUBLEBUFFER | LVS_EX_HEADERDRAGDROP);
}

void VirtualRows::setColumns(std::vector<RowColumn> columns, UINT dpi) {
  while (SendMessageW(list_, LVM_DELETECOLUMN, 0, 0)) {
  }
  columns_ = std::move(columns);
  // The first column that is put in is aligned to the left whatever is asked: one that goes again.
  LVCOLUMNW first{};
  SendMessageW(list_, LVM_INSERTCOLUMNW, 0, reinterpret_cast<LPARAM>(&first));
  for (int index = 0; index < this->columns(); ++index) {
    const RowColumn& row = columns_[static_cast<std::size_t>(index)];
    std::wstring heading = wide(row.heading);
    LVCOLUMNW column{};
    column.mask = LVCF_TEXT | LVCF_SUBITEM | LVCF_FMT;
    column.fmt = row.number ? LVCFMT_RIGHT : LVCFMT_LEFT;
    column.pszText = heading.data();
    column.iSubItem = index + 1;
    SendMessageW(list_, LVM_INSERTCOLUMNW, static_cast<WPARAM>(index + 1),
                 reinterpret_cast<LPARAM>(&column));
  }
  SendMessageW(list_, LVM_DELETECOLUMN, 0, 0);
  place(dpi);
}

void VirtualRows::place(UINT dpi) {
  const auto scaled = [dpi](int length) { return MulDiv(length, static_cast<int>(dpi), 96); };
  RECT inside;
  GetWindowRect(list_, &inside);
  int left = inside.right - inside.left - GetSystemMetricsForDpi(SM_CXVSCROLL, dpi) -
             2 * GetSystemMetricsForDpi(SM_CXEDGE, dpi);
  for (const RowColumn& column : columns_) left -= scaled(column.width);
  for (int index = 0; index < columns(); ++index) {
    const RowColumn& column = columns_[static_cast<std::size_t>(index)];
    const int width = scaled(column.width) + (column.rest ? std::max(0, left) : 0);
    SendMessageW(list_, LVM_SETCOLUMNWIDTH, static_cast<WPARAM>(index), width);
  }
  // A row that was selected before the list had its height may lie below it.
  const std::size_t row = selected();
  if (row < count_ && !isInView(row)) showAmongOthers(row);
}

void VirtualRows::showOrder(int column, bool descending) const {
  const HWND header = ListView_GetHeader(list_);
  for (int index = 0; index < columns(); ++index) {
    HDITEMW item{};
    item.mask = HDI_FORMAT;
    SendMessageW(header, HDM_GETITEMW, static_cast<WPARAM>(index), reinterpret_cast<LPARAM>(&item));
    item.fmt &= ~(HDF_SORTUP | HDF_SORTDOWN);
    if (index == column) item.fmt |= descending ? HDF_SORTDOWN : HDF_SORTUP;
    SendMessageW(header, HDM_SETITEMW, static_cast<WPARAM>(index), reinterpret_cast<LPARAM>(&item));
  }
}

void VirtualRows::setCount(std::size_t rows) {
  count_ = std::min(rows, kMostRows);
  SendMessageW(list_, LVM_SETITEMCOUNT, count_, 0);
  InvalidateRect(list_, nullptr, FALSE);
}

std::size_t VirtualRows::selected() const {
  const int row = ListView_GetNextItem(list_, -1, LVNI_SELECTED);
  return row < 0 ? count_ : static_cast<std::size_t>(row);
}

void VirtualRows::select(std::size_t row) const {
  if (row >= count_) return;
  // Asked before: some systems scroll a row that gets the focus just into view.
  const bool shown = isInView(row);
  LVITEMW state{};
  state.stateMask = state.state = LVIS_SELECTED | LVIS_FOCUSED;
  SendMessageW(list_, LVM_SETITEMSTATE, row, reinterpret_cast<LPARAM>(&state));
  if (!shown) showAmongOthers(row);
}

bool VirtualRows::isInView(std::size_t row) const {
  const auto page = static_cast<std::size_t>(SendMessageW(list_, LVM_GETCOUNTPERPAGE, 0, 0));
  const auto top = static_cast<std::size_t>(SendMessageW(list_, LVM_GETTOPINDEX, 0, 0));
  return row >= top && row < top + page;
}

void VirtualRows::showAmongOthers(std::size_t row) const {
  RECT inside{};
  GetClientRect(list_, &inside);
  // While the list has no height, what it says of its page means nothing: place() comes back to it.
  if (inside.bottom == 0) return;
  const auto half = static_cast<std::size_t>(SendMessageW(list_, LVM_GETCOUNTPERPAGE, 0, 0)) / 2;
  for (const std::size_t edge : {std::min(row + half, count_ - 1), row - std::min(row, half)})
    SendMessageW(list_, LVM_ENSUREVISIBLE, edge, FALSE);
}

/// The selected row in its colours also while the keyboard is elsewhere: what the system gives it
/// then can hardly be told from the others.
LRESULT VirtualRows::colours(NMLVCUSTOMDRAW& row) const {
  if (row.nmcd.dwDrawStage == CDDS_PREPAINT) return CDRF_NOTIFYITEMDRAW;
  if (row.nmcd.dwDrawStage != CDDS_ITEMPREPAINT) return CDRF_DODEFAULT;
  if (ListView_GetItemState(list_, static_cast<int>(row.nmcd.dwItemSpec), LVIS_SELECTED) == 0)
    return CDRF_DODEFAULT;
  row.nmcd.uItemState &= ~static_cast<UINT>(CDIS_SELECTED);
  row.clrText = GetSysColor(COLOR_HIGHLIGHTTEXT);
  row.clrTextBk = GetSysColor(COLOR_HIGHLIGHT);
  return CDRF_NEWFONT;
}

bool VirtualRows::answer(const NMHDR& notice, LRESULT& result) {
  if (notice.hwndFrom != list_) return false;
  if (notice.code == NM_CUSTOMDRAW) {
    result = colours(const_cast<NMLVCUSTOMDRAW&>(reinterpret_cast<const NMLVCUSTOMDRAW&>(notice)));
    return true;
  }
  if (notice.code != LVN_GETDISPINFOW) return false;
  // Windows says by the header which of its records this is the beginning of.
  auto& item = const_cast<NMLVDISPINFOW&>(reinterpret_cast<const NMLVDISPINFOW&>(notice)).item;
  if (!(item.mask & LVIF_TEXT) || item.iItem < 0) return true;
  text_ = wide(cell_(static_cast<std::size_t>(item.iItem), item.iSubItem));
  item.pszText = text_.data();
  return true;
}

}  // namespace kelvane::win32
