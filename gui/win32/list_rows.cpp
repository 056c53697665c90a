#include "gui/win32/list_rows.h"

#include <commctrl.h>

#include "base/win32/utf16.h"

namespace kelvane::win32 {

namespace {

constexpr int kLongest = 512;

}  // namespace

void addColumns(HWND list, std::initializer_list<const char*> captions) {
  ListView_SetExtendedListViewStyle(list, LVS_EX_FULLROWSELECT | LVS_EX_LABELTIP);
  int index = 0;
  for (const char* caption : captions) {
    std::wstring text = wide(caption);
    LVCOLUMNW column{};
    column.mask = LVCF_TEXT | LVCF_SUBITEM;
    column.pszText = text.data();
    column.iSubItem = index;
    SendMessageW(list, LVM_INSERTCOLUMNW, static_cast<WPARAM>(index++),
                 reinterpret_cast<LPARAM>(&column));
  }
}

void setWidths(HWND list, std::initializer_list<int> widths) {
  int index = 0;
  for (const int width : widths)
    SendMessageW(list, LVM_SETCOLUMNWIDTH, static_cast<WPARAM>(index++), width);
}

void setRowCount(HWND list, int rows) {
  int now = ListView_GetItemCount(list);
  for (; now > rows; --now) SendMessageW(list, LVM_DELETEITEM, static_cast<WPARAM>(now - 1), 0);
  for (; now < rows; ++now) {
    LVITEMW row{};
    row.iItem = now;
    SendMessageW(list, LVM_INSERTITEMW, 0, reinterpret_cast<LPARAM>(&row));
  }
}

void setCell(HWND list, int row, int column, const std::string& text) {
  wchar_t before[kLongest] = L"";
  LVITEMW cell{};
  cell.iSubItem = column;
  cell.pszText = before;
  cell.cchTextMax = kLongest;
  SendMessageW(list, LVM_GETITEMTEXTW, static_cast<WPARAM>(row), reinterpret_cast<LPARAM>(&cell));
  std::wstring now = wide(text);
  if (now == before) return;
  cell.pszText = now.data();
  SendMessageW(list, LVM_SETITEMTEXTW, static_cast<WPARAM>(row), reinterpret_cast<LPARAM>(&cell));
}

void selectRow(HWND list, int row) {
  LVITEMW state{};
  state.stateMask = state.state = LVIS_SELECTED | LVIS_FOCUSED;
  SendMessageW(list, LVM_SETITEMSTATE, static_cast<WPARAM>(row), reinterpret_cast<LPARAM>(&state));
  SendMessageW(list, LVM_ENSUREVISIBLE, static_cast<WPARAM>(row), FALSE);
}

}  // namespace kelvane::win32
