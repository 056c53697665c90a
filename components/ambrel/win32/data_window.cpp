#include "components/ambrel/win32/data_window.h"

#include <algorithm>

#include "base/win32/utf16.h"
#include "components/ambrel/win32/dialog_ids.h"

namespace kelvane::ambrel {

namespace {

constexpr int kTextWidth = 120, kNumberWidth = 84;

}  // namespace

DataWindow::DataWindow(HWND owner, AmbrelCore& core)
    : ListWindow({L"KelvaneDataView", "Frequency database", owner, 560, 300, true, 860, 460}, core),
      data_(core) {
  makeControls();
  check(id::FollowReceiver, true);
  showTables();
}

void DataWindow::makeControls() {
  using namespace win32;
  add({id::Label, WC_STATICW, 0, "T&able:", {12, 15, 48, 18}});
  add({id::Table,
       WC_COMBOBOXW,
       CBS_DROPDOWNLIST | WS_TABSTOP | WS_VSCROLL,
       "",
       {62, 11, 320, 320},
       "The band plan of the region, or one of the sets of known frequencies",
       Widen});
  add({id::FollowReceiver,
       WC_BUTTONW,
       BS_AUTOCHECKBOX | WS_TABSTOP,
       "&Follow the receiver",
       {398, 14, 150, 18},
       "The row where the receiver is is selected as it is tuned",
       MoveRight});
  addRows(id::Rows, "Frequency database", {12, 44, 536, 202}, [this](std::size_t row, int column) {
    return data_.cell(row, static_cast<std::size_t>(column));
  });
  addStatus({12, 265, 320, 18});
  addEnds(
      {352, 260, "&Tune", "Tune the receiver to the selected row", "&Close", MoveRight | MoveDown});
}

void DataWindow::command(int control, int notice) {
  if (control == id::Table && notice == CBN_SELCHANGE) {
    data_.look(static_cast<std::size_t>(SendMessageW(item(id::Table), CB_GETCURSEL, 0, 0)));
    showTable();
  }
  if (control == id::FollowReceiver && notice == BN_CLICKED) {
    gone_ = -1;
    follow();
  }
  ListWindow::command(control, notice);
}

void DataWindow::look() {
  if (data_.follow()) return showTables();
  if (checked(id::FollowReceiver)) goToReceiver();
}

void DataWindow::showTables() {
  SendMessageW(item(id::Table), CB_RESETCONTENT, 0, 0);
  for (const std::string& name : data_.tables())
    SendMessageW(item(id::Table), CB_ADDSTRING, 0, reinterpret_cast<LPARAM>(wide(name).c_str()));
  SendMessageW(item(id::Table), CB_SETCURSEL, data_.table(), 0);
  showTable();
}

void DataWindow::showTable() {
  std::vector<win32::RowColumn> columns;
  for (const DataTable::Column& column : data_.columns())
    columns.push_back({column.heading, column.number ? kNumberWidth : kTextWidth, column.number});
  std::ranges::find(columns, false, &win32::RowColumn::number)->rest = true;
  rows().setCount(0);
  rows().setColumns(std::move(columns), static_cast<UINT>(scaled(96)));
  rows().setCount(data_.rows());
  setText(id::Status, std::to_string(data_.rows()) + " rows");
  gone_ = -1;
  goToReceiver();
}

void DataWindow::goToReceiver() {
  // Where the operator went since stays, until the receiver is tuned again.
  if (gone_ == core_.position()) return;
  gone_ = core_.position();
  rows().select(data_.rowAt(gone_));
}

void DataWindow::tune() { data_.choose(rows().selected()); }

}  // namespace kelvane::ambrel
