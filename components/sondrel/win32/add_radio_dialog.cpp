#include "components/sondrel/win32/add_radio_dialog.h"

#include <algorithm>
#include <utility>

#include "base/text.h"
#include "base/win32/utf16.h"
#include "components/sondrel/win32/dialog_ids.h"
#include "gui/win32/common_dialogs.h"

namespace kelvane::sondrel {

namespace {

constexpr DWORD kPushed = BS_PUSHBUTTON | WS_TABSTOP;
constexpr DWORD kTyped = ES_AUTOHSCROLL | WS_TABSTOP;
constexpr DWORD kTypedOrChosen = CBS_DROPDOWN | CBS_AUTOHSCROLL | WS_TABSTOP | WS_VSCROLL;
constexpr const char* kAllMakers = "All makers";

/// The file that the operator shows; empty where he does not.
std::wstring askForRigctld(HWND owner) {
  std::vector<wchar_t> name(32768, L'\0');
  OPENFILENAMEW ask{};
  ask.lStructSize = sizeof ask;
  ask.hwndOwner = owner;
  ask.lpstrFilter = L"rigctld\0rigctld*.exe\0Programs\0*.exe\0";
  ask.lpstrFile = name.data();
  ask.nMaxFile = static_cast<DWORD>(name.size());
  ask.lpstrTitle = L"Where is rigctld.exe?";
  ask.Flags = OFN_FILEMUSTEXIST | OFN_HIDEREADONLY | OFN_NOCHANGEDIR | OFN_EXPLORER;
  return common_dialogs::openFileName(&ask) ? std::wstring(name.data()) : std::wstring();
}

}  // namespace

AddRadioDialog::AddRadioDialog(HWND owner, RadioDesk& desk,
                               const std::vector<ReceiverEntry>& receivers)
    : DialogWindow({L"KelvaneAddRadio", "Add a radio", owner, 560, 560}),
      desk_(desk),
      receivers_(receivers),
      list_((makeModel(), item(id::Models)), [this](std::size_t row, int column) {
        const RadioModel& model = known_.models->models[rows_[row]];
        return column == 0 ? model.maker : column == 1 ? model.name : model.status;
      }) {
  makePort();
  makeTrial();
  list_.setColumns({{"Maker", 150}, {"Model", 200, false, true}, {"Tried by Hamlib", 110}}, 96);
  desk_.setListener(waker());
  changes_ = desk_.changes() - 1;
  showDesk();
  prepare();
}

AddRadioDialog::~AddRadioDialog() {
  desk_.setListener({});
  desk_.watchPorts(false);
}

void AddRadioDialog::open() {
  desk_.watchPorts(true);
  desk_.look();
  showDesk();
  runModal();
}

void AddRadioDialog::makeModel() {
  add({id::Label, WC_STATICW, 0, "&Find:", {12, 15, 44, 16}});
  add({id::Find, WC_EDITW, kTyped, "", {60, 11, 250, 23}, "Any part of the maker or the model"});
  add({id::Label, WC_STATICW, 0, "&Maker:", {324, 15, 48, 16}});
  add({id::Maker,
       WC_COMBOBOXW,
       CBS_DROPDOWNLIST | WS_TABSTOP | WS_VSCROLL,
       "",
       {376, 11, 172, 300}});
  add({id::Models, WC_LISTVIEWW, win32::VirtualRows::kStyle, "Radios", {12, 42, 536, 150}});
  add({id::Rigctld, WC_STATICW, SS_NOPREFIX, "", {12, 198, 416, 48}, "", 0, "", true});
  add({id::ShowRigctld,
       WC_BUTTONW,
       kPushed,
       "Show &rigctld...",
       {438, 198, 110, 26},
       "Show where rigctld.exe is, if not this one is to be used"});
}

void AddRadioDialog::makePort() {
  add({id::Label, WC_STATICW, 0, "&Port or host:port:", {12, 255, 108, 16}});
  add({id::Device,
       WC_COMBOBOXW,
       kTypedOrChosen,
       "",
       {124, 251, 260, 200},
       "Where the radio is: a port of this computer, or a host and port in the network"});
  add({id::Label, WC_STATICW, 0, "&Speed:", {396, 255, 50, 16}});
  add({id::Speed,
       WC_COMBOBOXW,
       kTypedOrChosen,
       "",
       {450, 251, 98, 200},
       "As it is set at the radio, baud"});
  add({id::Label, WC_STATICW, 0, "Icom addr&ess:", {12, 286, 108, 16}});
  add({id::Civ, WC_EDITW, kTyped, "", {124, 282, 60, 23}, "As the radio shows it: 94h"});
  add({id::Handshake,
       WC_BUTTONW,
       BS_AUTOCHECKBOX | WS_TABSTOP,
       "The radio waits for RTS (&handshake)",
       {200, 285, 348, 18},
       "For a radio that answers only so. Otherwise RTS stays low, since it may key a "
       "transmitter"});
  add({id::Label, WC_STATICW, 0, "&Name:", {12, 317, 108, 16}});
  add({id::RadioName, WC_EDITW, kTyped, "", {124, 313, 260, 23}, "Shown on the receiver's tab"});
}

void AddRadioDialog::makeTrial() {
  add({id::Try, WC_BUTTONW, kPushed, "&Try", {12, 348, 96, 26}, "Asks the radio, changes nothing"});
  add({id::TrySpeeds,
       WC_BUTTONW,
       kPushed,
       "Try a&ll speeds",
       {116, 348, 120, 26},
       "Until the radio answers at one"});
  add({id::Stop, WC_BUTTONW, kPushed, "Stop", {244, 348, 76, 26}});
  add({id::Label, WC_STATICW, 0, "Nothing is changed at the radio.", {334, 354, 214, 16}});
  add({id::Steps,
       WC_EDITW,
       ES_MULTILINE | ES_READONLY | ES_AUTOVSCROLL | WS_VSCROLL | WS_TABSTOP,
       "",
       {12, 380, 536, 96},
       "",
       0,
       "What the trial found"});
  add({id::Problem, WC_STATICW, SS_NOPREFIX, "", {12, 484, 536, 32}, "", 0, "", true});
  addEnds({352, 522, "&Add", "", "&Cancel"});
}

void AddRadioDialog::laidOut() { list_.place(static_cast<UINT>(scaled(96))); }

void AddRadioDialog::tick() {
  showDesk();
  showTrial();
}

void AddRadioDialog::showDesk() {
  const std::uint32_t changes = desk_.changes();
  if (changes == changes_) return;
  changes_ = changes;
  const auto models = known_.models;
  const auto ports = known_.ports;
  known_ = desk_.state();
  const std::string program = known_.version + ", " + known_.program;
  const bool works = !known_.program.empty();
  if (known_.looking) {
    setText(id::Rigctld, "Looking for rigctld...");
  } else {
    setText(id::Rigctld, known_.remark.empty() || !works ? works ? program : known_.remark
                                                         : known_.remark + "\n" + program);
  }
  if (known_.models != models) showMakers();
  if (known_.ports != ports) showPorts();
  showFacts();
  enableButtons();
}

void AddRadioDialog::offer(int combo, const std::vector<std::string>& texts) {
  SendMessageW(item(combo), CB_RESETCONTENT, 0, 0);
  for (const auto& text : texts)
    SendMessageW(item(combo), CB_ADDSTRING, 0, reinterpret_cast<LPARAM>(wide(text).c_str()));
}

void AddRadioDialog::showMakers() {
  std::vector<std::string> makers = {kAllMakers};
  if (known_.models) std::ranges::copy(known_.models->search.makers(), std::back_inserter(makers));
  offer(id::Maker, makers);
  SendMessageW(item(id::Maker), CB_SETCURSEL, 0, 0);
  showModels();
}

void AddRadioDialog::showModels() {
  rows_.clear();
  if (known_.models) {
    const std::string maker = text(id::Maker);
    rows_ = known_.models->search.find(maker == kAllMakers ? "" : maker, text(id::Find));
  }
  filling_ = true;
  list_.setCount(rows_.size());
  ListView_SetItemState(item(id::Models), -1, 0, LVIS_SELECTED | LVIS_FOCUSED);
  filling_ = false;
  const auto same = [this](std::size_t place) {
    return known_.models->models[place].number == model_;
  };
  const auto shown = std::ranges::find_if(rows_, same);
  // What was typed means the first one of those left.
  const bool sought = !trimmed(text(id::Find)).empty() && !rows_.empty();
  if (shown != rows_.end() && !sought) {
    list_.select(static_cast<std::size_t>(shown - rows_.begin()));
  } else if (sought) {
    list_.select(0);
  } else {
    choose(rows_.size());
  }
}

void AddRadioDialog::showPorts() {
  if (SendMessageW(item(id::Device), CB_GETDROPPEDSTATE, 0, 0)) {
    // Not under the operator's pointer; soon again.
    known_.ports.clear();
    --changes_;
    return;
  }
  const std::string typed = text(id::Device);
  std::vector<std::string> offers;
  for (const SerialPort& port : known_.ports) offers.push_back(portOffer(port));
  offer(id::Device, offers);
  const bool only = typed.empty() && offers.size() == 1;
  setText(id::Device, only ? offers.front() : typed);
}

const RadioModel* AddRadioDialog::model() const {
  if (!known_.models || model_ == 0) return nullptr;
  const auto& models = known_.models->models;
  const auto found = std::ranges::find(models, model_, &RadioModel::number);
  return found == models.end() ? nullptr : &*found;
}

void AddRadioDialog::choose(std::size_t row) {
  const std::int32_t number =
      row < rows_.size() ? known_.models->models[rows_[row]].number : std::int32_t{0};
  if (number == model_) return;
  model_ = number;
  factsShown_ = 0;
  if (model_ != 0) desk_.ask(model_);
  const RadioModel* chosen = model();
  const std::string name = chosen ? chosen->name : std::string();
  if (text(id::RadioName) == proposedName_) setText(id::RadioName, name);
  proposedName_ = name;
  showFacts();
  enableButtons();
}

void AddRadioDialog::showFacts() {
  if (model_ == 0 || known_.factsOf != model_ || factsShown_ == model_) return;
  factsShown_ = model_;
  const ModelFacts& facts = known_.facts;
  std::vector<std::string> speeds;
  for (const auto speed : speedsOf(facts)) speeds.push_back(std::to_string(speed));
  offer(id::Speed, speeds);
  setText(id::Speed, std::to_string(likelySpeed(facts)));
  setText(id::Civ, facts.civ >= 0 ? civText(facts.civ) : std::string());
  check(id::Handshake, false);
}

void AddRadioDialog::enableButtons() {
  const bool facts = factsShown_ == model_ && model_ != 0;
  const bool serial = !facts || known_.facts.connection != ModelFacts::Connection::Network;
  const bool trying = trial_ && trial_->running();
  enable(id::Speed, serial);
  enable(id::Civ, facts && known_.facts.civ >= 0);
  enable(id::Handshake, facts && known_.facts.handshake);
  enable(id::Try, facts && !trying);
  enable(id::TrySpeeds,
         facts && !trying && known_.facts.connection == ModelFacts::Connection::Serial);
  enable(id::Stop, trying);
  enable(IDOK, facts);
}

void AddRadioDialog::say(const std::string& words) { setText(id::Problem, words); }

TypedRadio AddRadioDialog::typed() const {
  TypedRadio typed;
  typed.model = model();
  typed.facts = known_.facts;
  typed.device = text(id::Device);
  typed.speed = text(id::Speed);
  typed.civ = text(id::Civ);
  typed.handshake = checked(id::Handshake);
  typed.name = text(id::RadioName);
  return typed;
}

/// What is chosen; what is wrong with it is said.
Result<ReceiverEntry> AddRadioDialog::choice() {
  Result<ReceiverEntry> choice = chosenRadio(typed(), known_.ports, receivers_);
  say(choice.reason());
  if (!choice) MessageBeep(MB_ICONWARNING);
  return choice;
}

void AddRadioDialog::command(int control, int notice) {
  if (control == IDOK) return addRadio();
  if (control == IDCANCEL) return close();
  if (control == id::Find && notice == EN_CHANGE) return showModels();
  if (control == id::Maker && notice == CBN_SELCHANGE) return showModels();
  if (notice != BN_CLICKED) return;
  if (control == id::ShowRigctld) showRigctld();
  if (control == id::Try) tryOut(false);
  if (control == id::TrySpeeds) tryOut(true);
  if (control == id::Stop && trial_) trial_->stop();
}

bool AddRadioDialog::notified(const NMHDR& notice, LRESULT& result) {
  if (notice.idFrom != id::Models) return false;
  if (notice.code == LVN_ITEMCHANGED) {
    const auto& change = reinterpret_cast<const NMLISTVIEW&>(notice);
    if (!filling_ && change.iItem >= 0 && (change.uNewState & LVIS_SELECTED))
      choose(static_cast<std::size_t>(change.iItem));
    return true;
  }
  return known_.models && list_.answer(notice, result);
}

bool AddRadioDialog::keyDown(int keyCode, int shift) {
  // From what is typed straight into what was found.
  if (keyCode != VK_DOWN || shift != 0 || GetFocus() != item(id::Find)) return false;
  if (list_.selected() >= list_.count()) list_.select(0);
  SetFocus(item(id::Models));
  return true;
}

void AddRadioDialog::tryOut(bool allSpeeds) {
  const Result<ReceiverEntry> chosen = choice();
  if (!chosen) return;
  RadioSetup setup = setupOf(*chosen);
  setup.program = known_.program;
  const auto speeds = allSpeeds ? speedsOf(known_.facts) : std::vector<std::int32_t>{};
  trial_.reset();
  trial_ = std::make_unique<RadioTrial>(setup, speeds, waker());
  showTrial();
}

void AddRadioDialog::showTrial() {
  if (!trial_) return;
  const bool running = trial_->running();
  const std::string words = trial_->words();
  setText(id::Steps, win32::textLines(words + (running ? "\n..." : "")));
  enableButtons();
  const auto speed = trial_->answeredAt();
  if (running) return;
  if (speed && *speed > 0) setText(id::Speed, std::to_string(*speed));
  trial_.reset();
  enableButtons();
}

void AddRadioDialog::addRadio() {
  Result<ReceiverEntry> chosen = choice();
  if (!chosen) return;
  // The port is free when the receiver's own server opens it.
  trial_.reset();
  added_ = std::move(*chosen);
  close();
}

void AddRadioDialog::showRigctld() {
  const std::wstring file = askForRigctld(window());
  if (!file.empty()) desk_.show(file);
}

}  // namespace kelvane::sondrel
