#include "components/sondrel/win32/find_servers_dialog.h"

#include "base/number.h"
#include "base/text.h"
#include "base/win32/utf16.h"
#include "components/sondrel/win32/dialog_ids.h"
#include "gui/win32/list_rows.h"

namespace kelvane::sondrel {

FindServersDialog::FindServersDialog(HWND owner, std::vector<ServerPlace> known)
    : DialogWindow({L"KelvaneFindServers", "Find servers", owner, 500, 330}),
      known_(std::move(known)) {
  const DWORD push = BS_PUSHBUTTON | WS_TABSTOP;
  add({id::Label, WC_STATICW, 0, "Look on this computer, and &on:", {12, 15, 180, 16}});
  add({id::SearchHost,
       WC_EDITW,
       ES_AUTOHSCROLL | WS_TABSTOP,
       "",
       {196, 11, 190, 23},
       "Name or address of another computer, with or without :port; may be empty"});
  add({id::Search, WC_BUTTONW, push, "&Look", {396, 10, 92, 26}});
  add({id::Servers,
       WC_LISTVIEWW,
       LVS_REPORT | LVS_SINGLESEL | LVS_SHOWSELALWAYS | LVS_NOSORTHEADER | WS_TABSTOP,
       "Servers",
       {12, 44, 476, 190}});
  add({id::SearchState, WC_STATICW, SS_NOPREFIX, "", {12, 242, 476, 34}, "", 0, "", true});
  addEnds({292, 292, "&Add", "", "&Cancel"});
  win32::addColumns(item(id::Servers), {"Radio", "Where", "Frequency"});
  look();
}

void FindServersDialog::laidOut() {
  win32::setWidths(item(id::Servers), {scaled(200), scaled(140), scaled(120)});
}

int FindServersDialog::defaultButton() const {
  return GetFocus() == item(id::SearchHost) ? int{id::Search} : IDOK;
}

void FindServersDialog::command(int control, int notice) {
  if (control == IDOK) return addServer();
  if (control == IDCANCEL) return close();
  if (control == id::Search && notice == BN_CLICKED) look();
}

bool FindServersDialog::notified(const NMHDR& notice, LRESULT&) {
  if (notice.idFrom != id::Servers) return false;
  if (notice.code == NM_DBLCLK) addServer();
  if (notice.code == LVN_ITEMCHANGED) enable(IDOK, selected() >= 0);
  return notice.code == NM_DBLCLK;
}

void FindServersDialog::look() {
  search_.reset();
  found_.clear();
  search_ = std::make_unique<ServerSearch>(usualPlaces(text(id::SearchHost), known_), waker());
  show();
}

int FindServersDialog::selected() const {
  const int row = ListView_GetNextItem(item(id::Servers), -1, LVNI_SELECTED);
  return row < static_cast<int>(found_.size()) ? row : -1;
}

void FindServersDialog::show() {
  const bool running = search_->running();
  const int row = selected();
  const auto before = row >= 0 ? std::optional(found_[row].place) : std::nullopt;
  found_ = search_->found();
  const HWND list = item(id::Servers);
  win32::setRowCount(list, static_cast<int>(found_.size()));
  for (int i = 0; i < static_cast<int>(found_.size()); ++i) {
    const FoundServer& server = found_[static_cast<std::size_t>(i)];
    win32::setCell(list, i, 0, server.name.empty() ? "(tells no name)" : server.name);
    win32::setCell(list, i, 1, server.place.host + ":" + std::to_string(server.place.port));
    win32::setCell(list, i, 2, server.frequency);
    // One that was found later may stand before it.
    if (before == server.place && i != row) win32::selectRow(list, i);
  }
  if (selected() < 0 && !found_.empty() && !running) win32::selectRow(list, 0);
  const std::string found = std::to_string(found_.size()) + " found.";
  setText(id::SearchState, running ? "Looking..."
                           : found_.empty()
                               ? "Nobody answers at the usual ports (4532 to 4550 and 7356) but "
                                 "what is in the list of receivers already."
                               : found);
  enable(IDOK, selected() >= 0);
}

void FindServersDialog::addServer() {
  const int row = selected();
  if (row < 0) return;
  const FoundServer& server = found_[static_cast<std::size_t>(row)];
  ReceiverEntry entry{server.name.empty() ? "Receiver" : server.name, "rigctld", {}, {}};
  entry.set("Host", server.place.host);
  entry.set("Port", std::to_string(server.place.port));
  added_ = std::move(entry);
  close();
}

std::vector<ServerPlace> placesOf(const std::vector<ReceiverEntry>& receivers) {
  std::vector<ServerPlace> places;
  for (const ReceiverEntry& entry : receivers) {
    // A port that the program offers itself.
    if (const auto shared = wholeNumber(entry.setting("SharePort")); shared && *shared > 0)
      places.push_back({"127.0.0.1", static_cast<std::int32_t>(*shared)});
    if (!equalIgnoringCase(entry.kind, "rigctld")) continue;
    const auto port = wholeNumber(entry.setting("Port")).value_or(4532);
    places.push_back({std::string(entry.setting("Host")), static_cast<std::int32_t>(port)});
  }
  return places;
}

}  // namespace kelvane::sondrel
