#include "components/ambrel/win32/known_list_window.h"

#include <utility>

#include "base/win32/utf16.h"
#include "components/ambrel/win32/dialog_ids.h"

namespace kelvane::ambrel {

namespace {

constexpr DWORD kCheck = BS_AUTOCHECKBOX | WS_TABSTOP;

constexpr int kWidths[] = {70, 150, 120, 74, 64, 120, 90, 52, 90};
static_assert(std::size(kWidths) == kListHeadings.size());

}  // namespace

KnownListWindow::KnownListWindow(HWND owner, AmbrelCore& core)
    : ListWindow({L"KelvaneKnownList", "Known frequencies", owner, 760, 320, true, 900, 480}, core),
      list_(core, [this] { showRows(); }) {
  makeControls();
  std::vector<win32::RowColumn> columns;
  for (std::size_t i = 0; i < kListHeadings.size(); ++i) {
    columns.push_back({std::string(kListHeadings[i]), kWidths[i], i == 0, i == 1});
    SendMessageW(item(id::Sort), CB_ADDSTRING, 0,
                 reinterpret_cast<LPARAM>(wide(kListHeadings[i]).c_str()));
  }
  rows().setColumns(std::move(columns), 96);
  sortBy(ListColumn::Frequency);
}

void KnownListWindow::makeControls() {
  using namespace win32;
  add({id::Label, WC_STATICW, 0, "&Search:", {12, 15, 52, 18}});
  add({id::Search,
       WC_EDITW,
       ES_AUTOHSCROLL | WS_TABSTOP,
       "",
       {66, 11, 178, 23},
       "Words that a station must have, in any column",
       Widen});
  add({id::OnAir,
       WC_BUTTONW,
       kCheck,
       "On the &air now",
       {256, 14, 112, 18},
       "Leaves out the stations of the schedule that are not on the air at this minute",
       MoveRight});
  add({id::Favourites,
       WC_BUTTONW,
       kCheck,
       "&Favourites",
       {374, 14, 92, 18},
       "Only what is marked as favourite in My stations",
       MoveRight});
  add({id::Label, WC_STATICW, 0, "S&ort by:", {474, 15, 54, 18}, "", MoveRight});
  add({id::Sort,
       WC_COMBOBOXW,
       CBS_DROPDOWNLIST | WS_TABSTOP | WS_VSCROLL,
       "",
       {530, 11, 116, 260},
       "",
       MoveRight});
  add({id::Descending, WC_BUTTONW, kCheck, "&Descending", {656, 14, 92, 18}, "", MoveRight});
  addRows(id::Stations, "Known frequencies", {12, 44, 736, 222},
          [this](std::size_t row, int column) {
            return list_.cell(row, static_cast<ListColumn>(column));
          });
  addStatus({12, 285, 526, 18}, SS_ENDELLIPSIS);
  addEnds({552, 280, "&Tune", "Tune the receiver to the selected station", "&Close",
           MoveRight | MoveDown});
}

void KnownListWindow::command(int control, int notice) {
  if (control == id::Search && notice == EN_CHANGE) return ask();
  if (control == id::Sort && notice == CBN_SELCHANGE)
    return sortBy(static_cast<ListColumn>(SendMessageW(item(id::Sort), CB_GETCURSEL, 0, 0)));
  const bool checkBox =
      control == id::OnAir || control == id::Favourites || control == id::Descending;
  if (checkBox && notice == BN_CLICKED) return ask();
  ListWindow::command(control, notice);
}

bool KnownListWindow::notified(const NMHDR& notice, LRESULT& result) {
  if (notice.idFrom != id::Stations) return false;
  const auto& change = reinterpret_cast<const NMLISTVIEW&>(notice);
  switch (notice.code) {
    case LVN_COLUMNCLICK: {
      const auto column = static_cast<ListColumn>(change.iSubItem);
      check(id::Descending, column == list_.query().sort && !checked(id::Descending));
      sortBy(column);
      return true;
    }
    case LVN_ITEMCHANGED:
      if (!filling_ && change.iItem >= 0 && (change.uNewState & LVIS_SELECTED))
        chosen_ = list_.station(static_cast<std::size_t>(change.iItem));
      return true;
    default:
      return ListWindow::notified(notice, result);
  }
}

bool KnownListWindow::keyDown(int keyCode, int shift) {
  // From what is typed straight into what was found.
  if (keyCode != VK_DOWN || shift != 0 || GetFocus() != item(id::Search)) return false;
  SetFocus(item(id::Stations));
  return true;
}

void KnownListWindow::look() {
  list_.follow();
  showStatus();
}

void KnownListWindow::ask() {
  tuneWhenFound_ = false;
  ListQuery query = list_.query();
  query.text = text(id::Search);
  query.onAirOnly = checked(id::OnAir);
  query.favouritesOnly = checked(id::Favourites);
  query.descending = checked(id::Descending);
  list_.ask(std::move(query));
  showStatus();
}

void KnownListWindow::sortBy(ListColumn column) {
  ListQuery query = list_.query();
  query.sort = column;
  query.descending = checked(id::Descending);
  SendMessageW(item(id::Sort), CB_SETCURSEL, static_cast<WPARAM>(column), 0);
  list_.ask(std::move(query));
  showStatus();
}

void KnownListWindow::showRows() {
  filling_ = true;
  rows().showOrder(static_cast<int>(list_.query().sort), list_.query().descending);
  rows().setCount(list_.rows());
  rows().select(chosen_.table ? list_.rowOf(chosen_) : list_.rowNear(core_.position()));
  filling_ = false;
  showStatus();
  if (std::exchange(tuneWhenFound_, false)) tune();
}

void KnownListWindow::showStatus() {
  setText(id::Status, list_.isSearching() ? "Searching..." : list_.status());
}

void KnownListWindow::tune() {
  // Enter after fast typing means what is being sought, not what was found before.
  tuneWhenFound_ = list_.isSearching();
  if (!tuneWhenFound_) list_.choose(rows().selected());
}

}  // namespace kelvane::ambrel
