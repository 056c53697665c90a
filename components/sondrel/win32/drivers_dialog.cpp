#include "components/sondrel/win32/drivers_dialog.h"

#include <algorithm>
#include <utility>

#include "base/win32/utf16.h"
#include "components/sondrel/win32/dialog_ids.h"
#include "components/sondrel/win32/find_servers_dialog.h"
#include "gui/win32/list_rows.h"

namespace kelvane::sondrel {

namespace {

constexpr DWORD kList =
    LVS_REPORT | LVS_SINGLESEL | LVS_SHOWSELALWAYS | LVS_NOSORTHEADER | WS_TABSTOP;
/// In ms. It shows what changes by itself all the time while it is open: eight links, how a test
/// goes, the programs that come and go.
constexpr UINT kLookEvery = 250;
enum Column : int { kName, kKind, kLink };

void copyText(HWND window, const std::string& text) {
  const std::wstring words = wide(text);
  const std::size_t size = (words.size() + 1) * sizeof(wchar_t);
  if (!OpenClipboard(window)) return;
  EmptyClipboard();
  if (const HGLOBAL memory = GlobalAlloc(GMEM_MOVEABLE, size)) {
    memcpy(GlobalLock(memory), words.c_str(), size);
    GlobalUnlock(memory);
    if (!SetClipboardData(CF_UNICODETEXT, memory)) GlobalFree(memory);
  }
  CloseClipboard();
}

}  // namespace

DriversDialog::DriversDialog(HWND owner, DriversModel& model, LinkOf linkOf, FoundOf foundOf,
                             DeskOf deskOf, Programs programs,
                             const std::function<Result<>()>& apply)
    : DialogWindow({L"KelvaneDrivers", "Receivers", owner, 660, 638}),
      model_(model),
      linkOf_(std::move(linkOf)),
      foundOf_(std::move(foundOf)),
      deskOf_(std::move(deskOf)),
      programs_(std::move(programs)),
      original_(model.receivers()),
      apply_(apply) {
  makeList();
  makeReceiver();
  makeTest();
  makePrograms();
  win32::addColumns(item(id::Receivers), {"Name", "Kind", "Link"});
  win32::addColumns(item(id::Parameters), {"Parameter", "Value"});
  for (const ReceiverKind& kind : receiverKinds())
    SendMessageW(item(id::NewKind), CB_ADDSTRING, 0,
                 reinterpret_cast<LPARAM>(wide(kind.name).c_str()));
  SendMessageW(item(id::NewKind), CB_SETCURSEL, 0, 0);
  showReceivers();
  showReceiver();
  startTimer(kLookEvery);
}

void DriversDialog::makeList() {
  add({id::Label, WC_STATICW, 0, "&Receivers:", {12, 12, 200, 16}});
  add({id::Receivers,
       WC_LISTVIEWW,
       kList,
       "Receivers",
       {12, 30, 306, 190},
       "The receivers in the order of the panel's tabs"});
  const DWORD push = BS_PUSHBUTTON | WS_TABSTOP;
  add({id::Remove, WC_BUTTONW, push, "R&emove", {12, 228, 96, 26}, "Take this receiver away"});
  add({id::MoveUp, WC_BUTTONW, push, "Move &up", {117, 228, 96, 26}, "One place to the front"});
  add({id::MoveDown, WC_BUTTONW, push, "Move &down", {222, 228, 96, 26}, "One place to the back"});
  add({id::Label, WC_STATICW, 0, "&Kind of a new one:", {12, 269, 110, 16}});
  add({id::NewKind,
       WC_COMBOBOXW,
       CBS_DROPDOWNLIST | WS_TABSTOP | WS_VSCROLL,
       "",
       {124, 265, 90, 120}});
  add({id::Add, WC_BUTTONW, push, "&Add", {222, 264, 96, 26}, "Add a receiver of this kind"});
  add({id::AddRadio,
       WC_BUTTONW,
       push,
       "Add a radi&o...",
       {12, 296, 149, 26},
       "A radio on a cable or in the network: choose its maker, model and port"});
  add({id::FindServers,
       WC_BUTTONW,
       push,
       "&Find servers...",
       {169, 296, 149, 26},
       "Radio servers that run already, here or on another computer"});
}

void DriversDialog::makeReceiver() {
  const DWORD edit = ES_AUTOHSCROLL | WS_TABSTOP;
  add({id::Label, WC_STATICW, 0, "&Name:", {334, 12, 200, 16}});
  add({id::Name, WC_EDITW, edit, "", {334, 30, 314, 23}, "Shown on the receiver's tab"});
  add({id::Label, WC_STATICW, 0, "&Parameters:", {334, 62, 200, 16}});
  add({id::Parameters, WC_LISTVIEWW, kList, "Parameters", {334, 80, 314, 210}});
  add({id::Label, WC_STATICW, 0, "&Value:", {334, 302, 60, 16}});
  add({id::Value, WC_EDITW, edit, "", {394, 298, 254, 23}, "Empty for the usual value"});
  add({id::Help, WC_STATICW, SS_NOPREFIX, "", {334, 327, 314, 32}});
  add({id::Problem, WC_STATICW, SS_NOPREFIX, "", {12, 328, 306, 36}, "", 0, "", true});
}

void DriversDialog::makeTest() {
  const DWORD push = BS_PUSHBUTTON | WS_TABSTOP;
  add({id::Test, WC_BUTTONW, push, "&Test", {12, 370, 96, 26}});
  add({id::Label,
       WC_STATICW,
       0,
       "Connects with these settings, and changes nothing at the radio:",
       {118, 376, 400, 16}});
  add({id::Found,
       WC_EDITW,
       ES_MULTILINE | ES_READONLY | ES_AUTOVSCROLL | WS_VSCROLL | WS_TABSTOP,
       "",
       {12, 402, 636, 108},
       "",
       0,
       "What the test found"});
}

void DriversDialog::makePrograms() {
  const DWORD push = BS_PUSHBUTTON | WS_TABSTOP;
  add({id::ShareState, WC_STATICW, SS_NOPREFIX, "", {12, 520, 636, 16}});
  add({id::Programs,
       WC_LISTBOXW,
       LBS_NOTIFY | LBS_NOINTEGRALHEIGHT | WS_BORDER | WS_VSCROLL | WS_TABSTOP,
       "",
       {12, 540, 306, 58},
       "The programs that use this receiver, by their addresses",
       0,
       "Programs that use it"});
  add({id::CopyAddress,
       WC_BUTTONW,
       push,
       "Cop&y address",
       {334, 540, 110, 26},
       "Copies where other programs reach this receiver"});
  add({id::EndProgram,
       WC_BUTTONW,
       push,
       "End pro&gram",
       {334, 572, 110, 26},
       "Ends the connection of the program that is selected"});
  addEnds({452, 604, "OK", "", "&Cancel"});
}

void DriversDialog::tick() {
  if (giveUpAt_ != kNever) return apply();
  showLinks();
  showTest();
  showPrograms();
  prepareRadio();
}

void DriversDialog::laidOut() {
  win32::setWidths(item(id::Receivers), {scaled(104), scaled(74), scaled(122)});
  win32::setWidths(item(id::Parameters), {scaled(96), scaled(194)});
}

void DriversDialog::showReceivers() {
  filling_ = true;
  const HWND list = item(id::Receivers);
  const auto& receivers = model_.receivers();
  win32::setRowCount(list, static_cast<int>(receivers.size()));
  for (int i = 0; i < static_cast<int>(receivers.size()); ++i) {
    win32::setCell(list, i, kName, receivers[i].name);
    win32::setCell(list, i, kKind, std::string(model_.kindOf(i).name));
  }
  receiver_ = std::clamp(receiver_, 0, std::max(0, static_cast<int>(receivers.size()) - 1));
  win32::selectRow(list, receiver_);
  filling_ = false;
  showLinks();
}

void DriversDialog::showLinks() {
  const auto& receivers = model_.receivers();
  for (int i = 0; i < static_cast<int>(receivers.size()); ++i) {
    const std::string words = linkOf_(receivers[i].memories);
    win32::setCell(item(id::Receivers), i, kLink, words.empty() ? "new" : words);
  }
}

void DriversDialog::showReceiver() {
  const bool any = !model_.receivers().empty();
  filling_ = true;
  setText(id::Name, any ? model_.receivers()[receiver_].name : std::string());
  filling_ = false;
  enable(id::Name, any);
  enable(id::Value, any);
  showParameters();
  showPrograms();
  enableButtons();
}

void DriversDialog::showPrograms() {
  const bool any = !model_.receivers().empty();
  const auto sight =
      any ? programs_.of(model_.receivers()[receiver_].memories) : SondrelCore::ShareSight();
  const std::string last =
      sight.movedBy.empty() ? std::string() : " Moved last by " + sight.movedBy + ".";
  setText(id::ShareState, sight.state.empty()
                              ? "Not shared with other programs. The parameter Share says who may."
                              : sight.state + last);
  if (sight.programs != shownPrograms_) {
    const HWND list = item(id::Programs);
    const auto row = SendMessageW(list, LB_GETCURSEL, 0, 0);
    const std::string selected =
        row >= 0 && row < static_cast<LRESULT>(shownPrograms_.size()) ? shownPrograms_[row] : "";
    shownPrograms_ = sight.programs;
    SendMessageW(list, LB_RESETCONTENT, 0, 0);
    for (const std::string& program : shownPrograms_) {
      SendMessageW(list, LB_ADDSTRING, 0, reinterpret_cast<LPARAM>(wide(program).c_str()));
    }
    const auto still = std::ranges::find(shownPrograms_, selected);
    if (still != shownPrograms_.end()) {
      SendMessageW(list, LB_SETCURSEL, still - shownPrograms_.begin(), 0);
    }
  }
  enable(id::CopyAddress, !sight.address.empty());
  enable(id::EndProgram, SendMessageW(item(id::Programs), LB_GETCURSEL, 0, 0) >= 0);
}

void DriversDialog::copyAddress() {
  if (!model_.receivers().empty())
    copyText(window(), programs_.of(model_.receivers()[receiver_].memories).address);
}

void DriversDialog::endProgram() {
  const auto row = SendMessageW(item(id::Programs), LB_GETCURSEL, 0, 0);
  if (row < 0 || row >= static_cast<LRESULT>(shownPrograms_.size())) return;
  programs_.end(model_.receivers()[receiver_].memories, shownPrograms_[row]);
}

void DriversDialog::showParameters() {
  filling_ = true;
  const HWND list = item(id::Parameters);
  const bool any = !model_.receivers().empty();
  const auto parameters = any ? model_.kindOf(receiver_).parameters : std::span<const Parameter>();
  win32::setRowCount(list, static_cast<int>(parameters.size()));
  for (int i = 0; i < static_cast<int>(parameters.size()); ++i) {
    win32::setCell(list, i, 0, std::string(parameters[i].key));
    win32::setCell(list, i, 1, cell(parameters[i]));
  }
  parameter_ = std::clamp(parameter_, 0, std::max(0, static_cast<int>(parameters.size()) - 1));
  win32::selectRow(list, parameter_);
  filling_ = false;
  showParameter();
}

void DriversDialog::showParameter() {
  const Parameter* shown = parameter();
  filling_ = true;
  setText(id::Value, shown ? model_.parameter(receiver_, shown->key) : std::string());
  setText(id::Help,
          shown ? std::string(shown->key) + ": " + std::string(shown->help) + "." : std::string());
  filling_ = false;
}

void DriversDialog::enableButtons() {
  const int last = static_cast<int>(model_.receivers().size()) - 1;
  enable(id::Remove, last >= 0);
  enable(id::MoveUp, receiver_ > 0);
  enable(id::MoveDown, receiver_ < last);
  enable(id::Test, last >= 0 && model_.kindOf(receiver_).tryOut);
}

const Parameter* DriversDialog::parameter() const {
  if (model_.receivers().empty()) return nullptr;
  const auto parameters = model_.kindOf(receiver_).parameters;
  return parameter_ < static_cast<int>(parameters.size()) ? &parameters[parameter_] : nullptr;
}

std::string DriversDialog::cell(const Parameter& parameter) const {
  return model_.parameter(receiver_, parameter.key);
}

void DriversDialog::select(int receiver) {
  giveUpWrong();
  forgetTest();
  receiver_ = receiver;
  showReceiver();
}

void DriversDialog::say(const std::string& words) { setText(id::Problem, words); }

void DriversDialog::judge(int control, const std::string& problem) {
  if (problem.empty() && wrong_ != control && wrong_ != 0) return;
  wrong_ = problem.empty() ? 0 : control;
  problem_ = problem;
  say(problem);
}

void DriversDialog::giveUpWrong() {
  if (std::exchange(wrong_, 0) == 0) return say({});
  say(std::exchange(problem_, {}) + " It was left as it was.");
}

void DriversDialog::command(int control, int notice) {
  if (control == IDOK) return confirm();
  if (control == IDCANCEL) return close();
  if (control == id::Name && notice == EN_CHANGE && !filling_) return nameTyped();
  if (control == id::Value && notice == EN_CHANGE && !filling_) return valueTyped();
  if (notice != BN_CLICKED) return;
  if (control == id::Add) addReceiver();
  if (control == id::AddRadio) addRadio();
  if (control == id::FindServers) findServers();
  if (control == id::Remove) removeReceiver();
  if (control == id::MoveUp) moveReceiver(-1);
  if (control == id::MoveDown) moveReceiver(1);
  if (control == id::Test) test();
  if (control == id::CopyAddress) copyAddress();
  if (control == id::EndProgram) endProgram();
}

bool DriversDialog::notified(const NMHDR& notice, LRESULT&) {
  if (notice.code != LVN_ITEMCHANGED || filling_) return false;
  const auto& change = reinterpret_cast<const NMLISTVIEW&>(notice);
  if (!(change.uNewState & LVIS_SELECTED) || (change.uOldState & LVIS_SELECTED)) return false;
  if (notice.idFrom == id::Receivers) {
    select(change.iItem);
  } else {
    giveUpWrong();
    parameter_ = change.iItem;
    showParameter();
  }
  return true;
}

void DriversDialog::addReceiver() {
  giveUpWrong();
  const auto kind = static_cast<std::size_t>(SendMessageW(item(id::NewKind), CB_GETCURSEL, 0, 0));
  if (kind >= receiverKinds().size()) return;
  const Result<> added = model_.add(receiverKinds()[kind].name);
  if (!added) return say(added.reason());
  forgetTest();
  receiver_ = static_cast<int>(model_.receivers().size()) - 1;
  showReceivers();
  showReceiver();
  // With the proposed name selected: what is typed replaces it.
  SendMessageW(window(), WM_NEXTDLGCTL, reinterpret_cast<WPARAM>(item(id::Name)), TRUE);
}

void DriversDialog::addRadio() {
  giveUpWrong();
  forgetTest();
  auto dialog = std::move(radio_);
  if (!dialog) dialog = std::make_unique<AddRadioDialog>(window(), deskOf_(), model_.receivers());
  dialog->open();
  takeIn(dialog->added());
}

/// Its many controls are made while nobody waits for them.
void DriversDialog::prepareRadio() {
  const bool busy = HIWORD(GetQueueStatus(QS_INPUT)) != 0 || !IsWindowEnabled(window());
  if (radio_ || busy) return;
  radio_ = std::make_unique<AddRadioDialog>(window(), deskOf_(), model_.receivers());
}

void DriversDialog::findServers() {
  giveUpWrong();
  forgetTest();
  FindServersDialog dialog(window(), placesOf(model_.receivers()));
  dialog.runModal();
  takeIn(dialog.added());
}

/// Adds what another dialog has made. Where nothing else was changed here it takes effect at once.
void DriversDialog::takeIn(const std::optional<ReceiverEntry>& added) {
  if (!added) return;
  const bool untouched = model_.receivers() == original_;
  const Result<> done = model_.add(*added);
  if (!done) return say(done.reason());
  receiver_ = static_cast<int>(model_.receivers().size()) - 1;
  showReceivers();
  showReceiver();
  if (untouched) return confirm();
  say("OK keeps the list with what else was changed.");
}

void DriversDialog::removeReceiver() {
  giveUpWrong();
  forgetTest();
  say(model_.remove(receiver_).reason());
  showReceivers();
  showReceiver();
}

void DriversDialog::moveReceiver(int by) {
  giveUpWrong();
  const Result<> moved = model_.move(receiver_, receiver_ + by);
  if (!moved) return say(moved.reason());
  receiver_ += by;
  showReceivers();
  showReceiver();
}

void DriversDialog::nameTyped() {
  judge(id::Name, model_.rename(receiver_, text(id::Name)).reason());
  if (wrong_ != id::Name)
    win32::setCell(item(id::Receivers), receiver_, kName, model_.receivers()[receiver_].name);
}

void DriversDialog::valueTyped() {
  const Parameter* typed = parameter();
  if (!typed) return;
  forgetTest();
  judge(id::Value, model_.setParameter(receiver_, typed->key, text(id::Value)).reason());
  if (wrong_ == id::Value) return;
  win32::setCell(item(id::Parameters), parameter_, 1, cell(*typed));
  if (wrong_ == 0 && typed->key == "Device") say(samePortWords(model_.receivers(), receiver_));
}

bool DriversDialog::somethingWrong() {
  if (wrong_ == 0) return false;
  say(problem_);
  MessageBeep(MB_ICONWARNING);
  SetFocus(item(wrong_));
  return true;
}

void DriversDialog::test() {
  if (somethingWrong()) return;
  const ReceiverEntry& entry = model_.receivers()[receiver_];
  trial_.reset();
  const std::string taken = samePortWords(model_.receivers(), receiver_);
  if (!taken.empty()) return setText(id::Found, taken);
  // Some servers take one client alone, or the newest: a link that is up is not put at risk.
  const std::string found = foundOf_(entry);
  setText(id::Found, found.empty() ? "Trying." : win32::textLines("Its link is up.\n" + found));
  if (found.empty()) trial_ = model_.kindOf(receiver_).tryOut(entry);
}

void DriversDialog::showTest() {
  // It goes on after the first result: a slow radio tells more later.
  const auto result = trial_ ? trial_->result() : std::nullopt;
  if (result) setText(id::Found, win32::textLines(*result));
}

void DriversDialog::forgetTest() {
  trial_.reset();
  setText(id::Found, {});
}

void DriversDialog::confirm() {
  if (somethingWrong()) return;
  giveUpAt_ = std::chrono::steady_clock::now() + kFileRetryTime;
  enable(IDOK, false);
  apply();
}

/// Another program that holds the list is waited for by the timer, with the window alive.
void DriversDialog::apply() {
  const Result<> applied = apply_();
  if (applied) return close();
  say(applied.reason());
  if (applied.held() && std::chrono::steady_clock::now() < giveUpAt_) return;
  giveUpAt_ = kNever;
  enable(IDOK, true);
  MessageBoxW(window(), wide(applied.reason()).c_str(), L"Receivers", MB_OK | MB_ICONWARNING);
}

}  // namespace kelvane::sondrel
