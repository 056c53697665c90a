#include "panel/main_window.h"

#include <algorithm>
#include <array>
#include <vector>

#include "base/barrier.h"
#include "base/text.h"
#include "companions/channel_editor.h"
#include "companions/data_log.h"
#include "overview/station_views.h"
#include "own_list/station_editor.h"
#include "station_log/station_names.h"
#include "ui/alt_letters.h"
#include "ui/control_ids.h"
#include "ui/key_codes.h"
#include "ui/main_controls.h"

namespace kelvane {

namespace {

constexpr Colour kLamp = Colour::rgb(255, 192, 128);
constexpr Colour kOpenLock = Colour::rgb(96, 220, 120);

bool within(int control, int first, std::size_t count) {
  return control >= first && control < first + static_cast<int>(count);
}

/// The colours, tool tips and captions that never change afterwards.
MainView firstView() {
  MainView view;
  view.FrqBfo.tip = "BFO/Tone. Click Left/Right to Increase/Decrease.";
  view.LockImg[0].tip = "Click to disable remote control";
  view.LockImg[0].fore = kOpenLock;
  view.LockImg[1].tip = "Click to enable remote control";
  view.LockImg[1].fore = kLamp;
  for (Control& picture : view.LockImg) picture.back = kBlack;
  view.Config.text = "&Config.";
  view.Config.tip = "Configure parameters";
  view.Config.back = kMenuColour;
  return view;
}

}  // namespace

MAin::MAin(const PanelServices& services)
    : services_(services),
      options_(loadOptions(services.settings)),
      view_(firstView()),
      keyboard_(view_, services.window),
      refusal_(options_, keyboard_),
      shown_(services.receiver),
      row_({view_.FrqFrame, view_.FrqDotit, view_.FrqFocus, view_.FrqDigit, view_.FrqBfo},
           keyboard_),
      buttons_(view_.ModEvent, services.receiver),
      entry_(row_, services.receiver, shown_),
      indicators_(view_.SM, view_.SQ, view_.IO, services.receiver, shown_),
      levels_(view_.meter, view_.TabStrip, services.receiver, shown_),
      openers_(view_.Opener, services.receiver, services.frequency, shown_, companions_, keyboard_),
      groups_(keyboard_),
      remote_(view_, entry_, buttons_, indicators_, openers_, services.receiver, shown_, keyboard_),
      status_(view_.RxMask, view_.RxWhy),
      retry_(services.receiver),
      forwarding_(view_.GenEvent, services.receiver, shown_),
      stepping_(view_.VStep, view_.IStep, services.receiver, services.frequency, shown_),
      best_(view_, stepping_, services.receiver, services.frequency, shown_, options_),
      navigation_(view_, services.receiver, services.frequency, shown_, best_, keyboard_, refusal_),
      channels_(view_, services.receiver, shown_),
      channelized_(view_.FAlt, row_, services.receiver, shown_),
      hfFilter_(view_.HFF, services.receiver, shown_),
      bfo_(row_, services.receiver, shown_),
      dde_(view_.DDESts, services.digits, services.receiver, shown_, options_, keyboard_),
      utc_(view_.UtcTime, services.calendar),
      announcer_(view_.Announced),
      refresh_(view_, units(), services.receiver, shown_),
      tabs_(view_, services.receiver, shown_, refresh_, forwarding_, entry_, keyboard_, options_),
      saver_(services.disk),
      channelEditor_(std::make_unique<ChannelEditor>(
          services.receiver,
          FileServices{services.files, services.boxes, services.calendar, services.ownFolder},
          services.disk,
          ChannelEditor::Owner{view_.LChn, services.now,
                               [this] { services_.dialogs.showChannel(*channelEditor_); },
                               services.wakeWork})),
      log_(std::make_unique<DataLog>(DataLogServices{
          services.receiver, services.clipboard, services.files, services.calendar, services.folder,
          [&frequency = services.frequency](const std::vector<Hz>& frequencies) {
            return knownStations(frequency, frequencies);
          },
          services.wakeWork, services.disk})),
      views_(makeViews()),
      stations_(std::make_unique<StationEditor>(StationServices{
          services.receiver, services.frequency, services.files, services.boxes, services.ownFolder,
          services.disk,
          [this](Hz frequency, Setting mode, Setting filter) {
            return !shown_.locked() && navigation_.tuneTo(frequency, mode, filter);
          },
          [this] { return shown_.index(); }, [this] { services_.dialogs.showStations(*stations_); },
          services.wakeWork})),
      events_(services.receiver, shown_, options_, tabs_, refresh_, retry_, stepping_, units(),
              *channelEditor_, *log_, *views_, services.now),
      frqEvents_(services.receiver, shown_, navigation_, best_, refusal_),
      keys_(services.receiver, services.frequency, shown_, entry_, row_, stepping_, navigation_,
            channels_, best_, remote_, tabs_, services.clipboard, refusal_, openers_, groups_),
      config_(options_, services.settings, services.receiver, shown_, services.instance),
      help_(services.settings, services.saveReport) {
  provideCompanions();
  services_.frequency.SetFrqPlace(options_.OptPlace);
  showOptions();
  row_.Boundary(999'999'999, 0, 1);
  row_.Unselect(true);
  row_.Value(-1);
  tabs_.build();
  const Instant now = services.now();
  // Who starts the program wants to see the first receiver, where its link is not long in coming.
  tabs_.handMoved(now);
  dde_.apply();
  retry_.start(receiverCount(services.receiver), now);
  TimBlk_.start(kBlink, now);
}

MAin::~MAin() = default;

void MAin::finishWriting() {
  saver_.finish();
  channelEditor_->finishWriting();
}

void MAin::showOptions() {
  view_.onTop = options_.OptOnTop;
  view_.colours = options_.OptColours;
}

ReceiverUnits MAin::units() {
  return {entry_,    remote_, status_,     forwarding_,  buttons_,    bfo_,    hfFilter_,
          channels_, best_,   navigation_, channelized_, indicators_, levels_, dde_};
}

std::unique_ptr<StationViews> MAin::makeViews() {
  return std::make_unique<StationViews>(StationViews::Services{
      services_.receiver, services_.frequency, shown_, levels_, forwarding_, stepping_,
      services_.settings, services_.clipboard, services_.files, saver_,
      Clocks{services_.now, services_.wallTime}, services_.ownFolder / "levels",
      services_.keepAwake, [this] { return options_.OptColours; },
      [this](Index rx) { tabClicked(rx); },
      [this](Index rx) { return std::string(status_.wordsOf(rx).text); },
      [this] { services_.dialogs.showTraces(views_->traces(), PanelDialogs::Keys::Leave); }});
}

void MAin::provideCompanions() {
  companions_.provide(Companion::Help, [this] { services_.dialogs.showHelp(help_); });
  companions_.provide(Companion::Channels, [this] { channelEditor_->Receiver(shown_.index()); });
  companions_.provide(Companion::Stations, [this] { stations_->open(); });
  companions_.provide(Companion::TakeStation, [this] { stations_->takeShown(); });
  companions_.provide(Companion::Log, [this] { openLog(true); });
  companions_.provide(Companion::LogAndRecord, [this] { openLog(false); });
  companions_.provide(Companion::Overview,
                      [this] { services_.dialogs.showOverview(views_->overview()); });
  companions_.provide(Companion::Traces, [this] {
    services_.dialogs.showTraces(views_->traces(), PanelDialogs::Keys::Take);
  });
}

void MAin::openLog(bool updateOnly) {
  log_->Receiver(shown_.index());
  log_->UpdateOnly(updateOnly);
  log_->activate();
  services_.dialogs.showLog(*log_);
}

Placement MAin::startPlace() const {
  return {services_.settings.number("MainLeft", 1000), services_.settings.number("MainTop", 1000),
          0, 0};
}

void MAin::gotFocus(int control) {
  keyboard_.gotFocus(control);
  if (control == id::FrqFocus) return entry_.FrqFocus_GotFocus();
  if (within(control, id::FrqDigit, view_.FrqDigit.size()))
    entry_.FrqDigit_GotFocus(control - id::FrqDigit);
}

void MAin::lostFocus(int control) {
  keyboard_.lostFocus(control);
  if (within(control, id::FrqDigit, view_.FrqDigit.size()))
    entry_.FrqDigit_LostFocus(control - id::FrqDigit);
}

void MAin::keyDown(int control, int keyCode, int shift) {
  if (within(control, id::FrqDigit, view_.FrqDigit.size()))
    entry_.FrqDigit_KeyDown(control - id::FrqDigit, keyCode, shift);
}

void MAin::keyPress(int control, int character) {
  if (within(control, id::FrqDigit, view_.FrqDigit.size()))
    entry_.FrqDigit_KeyPress(control - id::FrqDigit, character);
  else if (control == id::FrqFocus)
    entry_.FrqFocus_KeyPress(character);
}

void MAin::clicked(int control, MouseButton button) {
  handMoved();
  // What the screen still shows may be gone or locked by now, or lie under a dialog.
  const Control* clicked = controlOf(view_, control);
  if (!clicked || !clicked->visible || !clicked->enabled || services_.window.modalOpen()) return;
  keyboard_.focus(id::FrqFocus);
  act(control, button);
}

/// Whether a click asks something of the receiver, as the commands of the keyboard do.
bool MAin::commands(int control) const {
  constexpr std::array labels{id::VChn + 0, id::Band + 0, id::HFF + 0,   id::BMod + 0,
                              id::BFlt + 0, id::FDif + 0, id::FrqBfo + 0};
  return std::ranges::find(labels, control) != labels.end() ||
         within(control, id::IO, view_.IO.size()) ||
         within(control, id::ModEvent, view_.ModEvent.size());
}

void MAin::act(int control, MouseButton button) {
  if (commands(control) && shown_.locked()) return;
  const bool ofPanel =
      control == id::ConfigButton || within(control, id::Opener, view_.Opener.size());
  if (!shown_.exists() && !ofPanel) return;
  const Long direction = button == MouseButton::Left ? kNext : kPrevious;
  switch (control) {
    case id::SM:
      indicators_.toggleMeter();
      return levels_.countInDecibels(indicators_.numeric());
    case id::VChn:
      return channels_.step(direction);
    case id::Band:
      return navigation_.step(Walk::Bands, direction);
    case id::RNG:
      return navigation_.nextRegion();
    case id::FAlt:
      return channelized_.toggle();
    case id::HFF:
      return hfFilter_.click();
    case id::BMod:
      return best_.applyMode();
    case id::BFlt:
      return best_.applyFilter();
    case id::FDif:
      return best_.tuneToKnown();
    case id::FrqBfo:
      return bfo_.click(button);
    case id::ConfigButton:
      return Config_Click();
    default:
      return clickedArray(control, button);
  }
}

void MAin::clickedArray(int control, MouseButton button) {
  if (within(control, id::LockImg, view_.LockImg.size())) return remote_.toggle();
  if (within(control, id::IO, view_.IO.size())) return indicators_.toggleLine(control - id::IO);
  if (within(control, id::VStep, view_.VStep.size()))
    return stepping_.click(control - id::VStep, button);
  if (within(control, id::GenEvent, view_.GenEvent.size()))
    return forwarding_.click(control - id::GenEvent);
  if (within(control, id::Opener, view_.Opener.size())) return openers_.click(control - id::Opener);
  if (within(control, id::ModEvent, view_.ModEvent.size()))
    buttons_.Click(shown_.index(), control - id::ModEvent);
}

void MAin::Config_Click() {
  forwarding_.off();
  view_.Config.pressed = true;
  config_.shown();
  services_.dialogs.showConfig(config_);
  view_.Config.pressed = false;
  showOptions();
  if (services_.frequency.SetFrqPlace(options_.OptPlace) == Outcome::Failed)
    services_.boxes.show("\"" + options_.OptPlace +
                             "\" is no place: a locator (JO21SX) or degrees of latitude and "
                             "longitude (52.1, 5.2) were expected.",
                         "", Buttons::Ok);
  if (tabs_.hasTabs())
    refresh_.run();
  else
    refresh_.none();
  dde_.apply();
}

bool MAin::accelerator(char32_t character) {
  // Alt was let go alone; a caption that marks no letter must not answer to that.
  if (character == 0) return false;
  handMoved();
  if (tabs_.accelerator(character)) return true;
  for (const ControlRow& row : mainControls()) {
    if (!marksLetters(row)) continue;
    for (int i = 0; i < row.count; ++i) {
      const Control& button = row.of(view_, i);
      if (!button.visible || !button.enabled) continue;
      if (markedLetter(button.text) != lowerCase(character)) continue;
      // The focus stays where it is: the next key may press the same button again.
      act(row.id + i, MouseButton::Left);
      return true;
    }
  }
  return false;
}

/// Enter on a button that has the focus, unless it is the end of a number.
bool MAin::pressFocused(int character, int focused) {
  if (character != key::Enter || !groups_.onButton() || !row_.TypedText().empty()) return false;
  act(focused, MouseButton::Left);
  return true;
}

bool MAin::previewKeyDown(int keyCode, int shift, int focused) {
  handMoved();
  groups_.setFocused(focused);
  return keys_.keyDown(keyCode, shift, within(focused, id::FrqDigit, view_.FrqDigit.size()));
}

bool MAin::previewKeyPress(int character, int focused) {
  handMoved();
  groups_.setFocused(focused);
  return pressFocused(character, focused) ||
         keys_.keyPress(character, within(focused, id::FrqDigit, view_.FrqDigit.size()));
}

void MAin::wheel(int delta) {
  handMoved();
  const int step = wheel_.turned(delta);
  if (step == 0 || shown_.locked()) return;
  keys_.endPair();
  for (int i = 0; i < static_cast<int>(view_.FrqDigit.size()); ++i) {
    if (view_.FrqDigit[i].selected)
      return entry_.FrqDigit_KeyDown(i, step > 0 ? key::Up : key::Down, 0);
  }
  keys_.keyDown(step > 0 ? key::Right : key::Left, 0, false);
}

void MAin::tabClicked(int tab) {
  handMoved();
  keys_.endPair();
  tabs_.click(tab);
}

void MAin::announce() {
  const TabRow& tabs = view_.TabStrip;
  if (tabs.selected < 0 || row_.EntryInProgress()) return;
  const bool online = shown_.online();
  const Hz hertz = online ? services_.receiver.GetRxFrequency(shown_.index(), kTuned).value() : -1;
  // What a program only tries is not spoken of.
  if (spokenReceiver_ != shown_.index() || !events_.isPassing(shown_.index(), hertz))
    spoken_ = hertz;
  spokenReceiver_ = shown_.index();
  announcer_.look({spokenCaption(tabs.tabs[tabs.selected].caption),
                   online ? std::string() : spokenFault(), spokenFrequency(spoken_)});
}

std::string MAin::heldForPrograms() const {
  ReceiverComponent& receiver = services_.receiver;
  const Index rx = shown_.index();
  if (view_.TabStrip.selected < 0 || shown_.online()) return {};
  if (receiver.GetRxProgramCount(rx) <= 0) return {};
  return receiver.GetRxShareState(rx).value();
}

std::string MAin::whyNotUp() const {
  if (view_.TabStrip.selected < 0 || shown_.online()) return {};
  return services_.receiver.GetRxLinkWords(shown_.index()).value();
}

std::string MAin::spokenFault() const {
  const std::string& why = view_.RxWhy.text;
  return why.empty() ? status_.words() : status_.words() + ". " + why;
}

void MAin::workEnded() {
  channelEditor_->deliver();
  log_->deliver();
  stations_->deliver();
}

void MAin::tick(Instant now) {
  if (retry_.tick(now)) keyboard_.runPending();
  if (TimBlk_.fired(now)) {
    status_.blink(shown_.online(), heldForPrograms(), whyNotUp());
    tabs_.highlightAll();
    dde_.blink();
    utc_.tick();
    levels_.askThresholds();
    announce();
  }
  levels_.tick(now);
  channelEditor_->tick(now);
  views_->tick(now);
  tabs_.serveRequest(now);
}

Instant MAin::nextDue() const {
  return std::min({retry_.timer().due(), TimBlk_.due(), channelEditor_->nextDue(),
                   views_->nextDue(), tabs_.nextDue(), levels_.nextDue()});
}

std::vector<LastWrite> MAin::lastWrites() {
  ReceiverComponent& receiver = services_.receiver;
  const auto saveLog = [this](const std::string& file) { return log_->saveTo(file); };
  const auto saveEdits = [this](const std::string& file) { return channelEditor_->saveTo(file); };
  const auto saveStations = [this](const std::string& file) { return stations_->saveTo(file); };
  std::vector<LastWrite> writes{
      {[this] { return log_->end(); }, "scratchpad", "txt", saveLog},
      {[this] { return channelEditor_->end(); }, "Channels", "txt", saveEdits},
      {[this] { return stations_->end(); }, "My stations", "txt", saveStations}};
  for (Index rx = 0; rx < receiverCount(receiver); ++rx) {
    const auto write = [&receiver, rx](const std::string& file) {
      return resultOf(receiver.FinishRxWriting(rx, file));
    };
    writes.push_back({[write] { return write({}); }, receiver.GetRxName(rx).value() + " channels",
                      "txt", write});
  }
  writes.push_back({[this] { return resultOf(services_.frequency.FinishFrqWriting()); }});
  return writes;
}

Result<> MAin::saveSettings(const Placement& place) {
  SettingsStore& settings = services_.settings;
  bool kept = settings.writeNumber("MainLeft", place.left);
  kept = settings.writeNumber("MainTop", place.top) && kept;
  kept = settings.writeNumber("MainWidth", place.width) && kept;
  kept = settings.writeNumber("MainHeight", place.height) && kept;
  if (!config_.saveAgain()) return Failure{"The options that you changed could not be saved."};
  if (!kept) return Failure{"The window's place could not be saved."};
  return {};
}

bool MAin::mayEnd() {
  // Where it cannot be asked, they are kept in a file as where nobody sits.
  bool ends = true;
  barrier("asking for unsaved edits", [&] { ends = channelEditor_->offerToSave(); });
  return ends;
}

void MAin::unload(const Placement& place, Ending how) {
  // First, since a system that ends may end the program at any moment.
  LastWrites last(services_.boxes, services_.files, services_.settings, how);
  for (const LastWrite& write : lastWrites()) last.finish(write);
  channelEditor_->close();
  views_->end();
  const Count receivers = receiverCount(services_.receiver);
  for (Index rx = 0; rx < receivers; ++rx) {
    services_.receiver.SetRxConnect(rx, false);
    keyboard_.runPending();
  }
  last.finish({[this, place] { return saveSettings(place); }});
}

}  // namespace kelvane
