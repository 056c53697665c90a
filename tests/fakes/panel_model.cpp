#include "tests/fakes/panel_model.h"

#include <algorithm>
#include <sstream>

#include "ui/key_codes.h"
#include "ui/main_controls.h"

namespace kelvane::fakes {

namespace {

constexpr std::size_t kStepsTold = 12;
constexpr milliseconds kAtWork{3000};
constexpr milliseconds kLately{60'000};

constexpr std::array kKeys{key::Up,       key::Down,    key::Left,     key::Right,
                           key::Home,     key::PadPlus, key::PadMinus, key::PageUp,
                           key::PageDown, key::Delete,  key::F6,       key::Esc};
constexpr std::array<int, 22> kLabels{
    id::ModEvent + 0, id::ModEvent + 1, id::ModEvent + 2, id::ModEvent + 3, id::ModEvent + 4,
    id::LockImg + 0,  id::SM,           id::VChn,         id::Band,         id::FAlt,
    id::HFF,          id::BMod,         id::BFlt,         id::FDif,         id::FrqBfo,
    id::IO + 0,       id::IO + 2,       id::VStep + 0,    id::VStep + 1,    id::GenEvent + 0,
    id::GenEvent + 1, id::GenEvent + 2};

/// Whether a text that carries a mark carries another radio's: "M3.0", "NB:N3.0" or "S3.-90".
bool foreignName(const std::string& text, int mark) {
  const std::size_t dot = text.find('.');
  return dot != std::string::npos && dot > 0 && text[dot - 1] != '0' + mark;
}

/// Whether a text that begins with a number has another radio's mark as its last digit.
bool foreignNumber(const std::string& text, int mark) {
  const std::size_t end = text.find_first_not_of("-0123456789");
  const std::string number = text.substr(0, end);
  return !number.empty() && number.back() >= '0' && number.back() <= '9' &&
         number.back() != '0' + mark;
}

/// Requests that are the panel's own and no command to a radio.
bool ofPanel(const std::string& request) {
  for (const char* name : {"SetRxShown", "SetRxOwner", "SetRxForward", "SetRxConnect", "SetRxTime",
                           "StopRxChannels", "EndRxKeys"}) {
    if (request.starts_with(name)) return true;
  }
  return false;
}

}  // namespace

PanelModel::PanelModel(std::uint32_t seed)
    : random_(seed),
      ambrel_(
          KELVANE_DATA_FOLDER, folder_.path() / "frequency", [this] { return utc_; }, [] {},
          ambrelWindows_) {
  ambrel_.OpenFrqConfig("Kelvane");
  ambrel_.InitFrqPlan(0);
  settings_.writeNumber("MonitorChanges", seed % 2 ? -1 : 0);
  panel_ = std::make_unique<MAin>(PanelServices{asked_, ambrel_, settings_, window_, dialogs_,
                                                clipboard_, digits_, [this] { return clock_.now; },
                                                "Kelvane", files_, calendar_, folder_.path(),
                                                fileDialogs_, folder_.path() / "panel"});
  window_.panel = panel_.get();
  window_.show();
  window_.pending = [this] { radios_.deliver(panel_->receiverEvents()); };
  ambrel_.addListener(panel_->frequencyEvents());
  lastUp_.fill(clock_.now);
  run(kLately + kAtWork);
}

PanelModel::~PanelModel() { ambrel_.removeListener(panel_->frequencyEvents()); }

std::optional<int> PanelModel::shown() const {
  const int tab = view().TabStrip.selected;
  const auto& set = radios_.set();
  if (tab < 0 || tab >= static_cast<int>(set.size())) return std::nullopt;
  return set[static_cast<std::size_t>(tab)];
}

bool PanelModel::exists(int mark) const {
  return std::ranges::find(radios_.set(), mark) != radios_.set().end();
}

std::string PanelModel::play(int steps) {
  for (int i = 0; i < steps; ++i) {
    step();
    steps_.push_back(said_);
    if (steps_.size() > kStepsTold) steps_.erase(steps_.begin());
    const std::string wrong = complaint();
    if (wrong.empty()) continue;
    std::ostringstream told;
    told << wrong << " after step " << i << ":";
    for (const std::string& said : steps_) told << "\n  " << said;
    return told.str();
  }
  return {};
}

void PanelModel::step() {
  before_ = shown();
  wasLocked_ = !before_ || !radios_.radio(*before_).online || !radios_.radio(*before_).remote;
  mayShowAnother_ = false;
  expectedSteps_ = -1;
  requests_.clear();
  asked_.told();
  const unsigned what = any(32);
  const unsigned number = any(1 << 16);
  const int mark = static_cast<int>(any(MarkedRadios::kRadios));
  if (what < 20) return hand();
  if (what < 26) {
    by_ = By::Radio;
    said_ = "radio " + std::to_string(mark) + " by itself, " + std::to_string(number);
    if (exists(mark)) radios_.happens(mark, number);
    return run(milliseconds(0));
  }
  if (what < 28) {
    by_ = By::Link;
    const bool up = number % 3 != 0;
    said_ = "link " + std::to_string(mark) + (up ? " up" : " down");
    if (exists(mark)) radios_.link(mark, up);
    return run(milliseconds(0));
  }
  if (what == 28 && number % 8 == 0) return changeSet(number / 8);
  by_ = By::Time;
  const milliseconds time(std::array{20, 100, 500, 3500, 70'000}[number % 5]);
  said_ = "time passes, " + std::to_string(time.count()) + " ms";
  run(time);
}

void PanelModel::changeSet(unsigned number) {
  by_ = By::Set;
  std::vector<int> marks = radios_.set();
  switch (number % 3) {
    case 0:
      if (!marks.empty())
        marks.erase(marks.begin() + static_cast<long>(any(static_cast<unsigned>(marks.size()))));
      break;
    case 1:
      for (int mark = 0; mark < MarkedRadios::kRadios; ++mark) {
        if (!exists(mark)) marks.push_back(mark);
      }
      break;
    default:
      std::ranges::shuffle(marks, random_);
  }
  said_ = "the set of radios is now";
  for (const int mark : marks) said_ += " " + std::to_string(mark);
  radios_.setRadios(std::move(marks));
  run(milliseconds(0));
}

void PanelModel::operatorActs(const std::string& what) {
  by_ = By::Hand;
  said_ = what;
  lastHand_ = clock_.now;
  // As the window tells it of each key and button that goes down anywhere in the program.
  panel_->handMoved();
}

void PanelModel::hand() {
  const unsigned what = any(16);
  const unsigned number = any(1 << 16);
  if (what < 6) {
    typeOne(number);
  } else if (what < 9) {
    pressKey(number);
  } else if (what < 12) {
    const int control = kLabels[number % kLabels.size()];
    press(control, number / 64 % 3 ? MouseButton::Left : MouseButton::Right, 1 + number / 256 % 3);
  } else if (what == 12) {
    chooseTab(number);
  } else if (what == 13) {
    operatorActs("wheel");
    panel_->wheel((static_cast<int>(number % 8) - 4) * 40);
  } else if (what == 14) {
    const int digit = id::FrqDigit + static_cast<int>(number % 9);
    operatorActs("click on digit " + std::to_string(number % 9));
    window_.focus(digit);
  } else {
    clipboard_.held = std::to_string(number * 100) + (number % 3 ? "" : " kHz");
    operatorActs("paste " + clipboard_.held);
    if (!panel_->previewKeyPress(22, window_.focused)) panel_->keyPress(window_.focused, 22);
  }
  requests_ = asked_.told();
  run(milliseconds(0));
}

void PanelModel::typeOne(unsigned number) {
  constexpr std::string_view typed = "0123456789.,:+-\r\x08\x1b\tmMuUfFbBcCsSdDlLrRgG \x03";
  const int character = static_cast<unsigned char>(typed[number % typed.size()]);
  operatorActs("character " + std::to_string(character));
  mayShowAnother_ = character == key::Tab;
  if (!panel_->previewKeyPress(character, window_.focused))
    panel_->keyPress(window_.focused, character);
}

void PanelModel::pressKey(unsigned number) {
  const int code = kKeys[number % kKeys.size()];
  const int shift = static_cast<int>(number / 16 % 8);
  operatorActs("key " + std::to_string(code) + " with " + std::to_string(shift));
  mayShowAnother_ = window_.focused == id::TabStrip;
  if (!panel_->previewKeyDown(code, shift, window_.focused))
    panel_->keyDown(window_.focused, code, shift);
}

void PanelModel::press(int control, MouseButton button, int times) {
  const bool mode = control >= id::ModEvent && control < id::ModEvent + 5;
  if (mode) button = MouseButton::Left;
  operatorActs("click on " + std::to_string(control) + ", " + std::to_string(times) + " times" +
               (button == MouseButton::Left ? "" : ", right"));
  const Control* face = nullptr;
  for (const ControlRow& row : mainControls()) {
    if (control >= row.id && control < row.id + row.count) face = &row.of(view(), control - row.id);
  }
  if (!face || !face->visible || !face->enabled) return;
  if (mode) expectedSteps_ = wasLocked_ ? 0 : times;
  for (int i = 0; i < times; ++i) panel_->clicked(control, button);
}

void PanelModel::chooseTab(unsigned number) {
  const int tab = static_cast<int>(number % 9);
  operatorActs("tab " + std::to_string(tab));
  mayShowAnother_ = true;
  panel_->tabClicked(tab);
}

void PanelModel::run(milliseconds time) {
  const Instant end = clock_.now + time;
  for (;;) {
    radios_.deliver(panel_->receiverEvents());
    ambrel_.deliverEvents();
    panel_->tick(clock_.now);
    window_.show();
    const Instant due = std::min(radios_.nextDue(), panel_->nextDue());
    if (clock_.now >= end && due > end) break;
    clock_.now = std::clamp(due, clock_.now, std::max(end, clock_.now));
  }
}

/// The operator gives up what he began and leaves the panel alone until every answer has come.
void PanelModel::settle() {
  for (int i = 0; i < 2; ++i) {
    if (!panel_->previewKeyPress(key::Escape, window_.focused))
      panel_->keyPress(window_.focused, key::Escape);
  }
  // An answer may bring about another request.
  do {
    run(milliseconds(600));
  } while (shown() && radios_.answerWaits(*shown()));
}

std::string PanelModel::complaint() {
  for (std::string wrong : {wrongDisplay(), wrongValues(), wrongFocus(), wrongRequests()}) {
    if (!wrong.empty()) return wrong;
  }
  for (std::size_t mark = 0; mark < lastUp_.size(); ++mark) {
    if (radios_.radio(static_cast<int>(mark)).online) lastUp_[mark] = clock_.now;
  }
  return any(16) == 0 ? wrongSettled() : std::string();
}

/// The display goes to another radio only when the operator chose it, or left the panel alone.
std::string PanelModel::wrongDisplay() const {
  if (shown().has_value() != !radios_.set().empty()) return "there are radios and none is shown";
  if (shown() == before_ || mayShowAnother_) return {};
  if (!before_ || !exists(*before_)) return {};
  if (by_ == By::Set) return "another radio is shown although the one before is still there";
  if (by_ == By::Hand) return "the hand did not ask for another radio, and another is shown";
  if (clock_.now - lastHand_ < kAtWork) return "another radio is shown while the operator works";
  return {};
}

/// Nothing on the panel is another radio's.
std::string PanelModel::wrongValues() const {
  if (!shown()) return {};
  const int mark = *shown();
  const MarkedRadio& radio = const_cast<PanelModel*>(this)->radios_.radio(mark);
  if (view().caption.find(" " + radio.kind.name) == std::string::npos ||
      view().caption.find("[Type: " + radio.id() + "]") == std::string::npos)
    return "the caption is \"" + view().caption + "\"";
  const auto& buttons = view().ModEvent;
  for (const Control* named :
       {&buttons[0], &buttons[2], &buttons[4], static_cast<const Control*>(&view().SM)}) {
    if (named->visible && foreignName(named->text, mark))
      return "another radio's \"" + named->text + "\" is shown for " + radio.kind.name;
  }
  for (const Control* number : {&buttons[1], &buttons[3]}) {
    if (number->visible && foreignNumber(number->text, mark))
      return "another radio's \"" + number->text + "\" is shown for " + radio.kind.name;
  }
  return {};
}

std::string PanelModel::wrongFocus() const {
  if (window_.focused == id::FrqFocus) return {};
  if (window_.focused == id::TabStrip) return {};
  for (const ControlRow& row : mainControls()) {
    const int element = window_.focused - row.id;
    if (element < 0 || element >= row.count) continue;
    const Control& face = row.of(view(), element);
    if (face.visible && face.enabled) return {};
  }
  return "the keyboard is on " + std::to_string(window_.focused) + ", which takes no keys";
}

std::string PanelModel::wrongRequests() const {
  std::vector<std::string> commands;
  for (const std::string& request : requests_) {
    if (!ofPanel(request)) commands.push_back(request);
  }
  const auto& set = radios_.set();
  std::set<std::string> kinds;
  for (const std::string& request : commands) {
    std::istringstream words(request);
    std::string name;
    std::size_t rx = 0;
    words >> name >> rx;
    if (!before_ || rx >= set.size() || set[rx] != *before_)
      return "\"" + request + "\" goes to a radio that was not shown";
    if (wasLocked_ && name != "SetRxRemote") return "\"" + request + "\" while locked";
    if (expectedSteps_ < 0 && said_.find("times") == std::string::npos &&
        !kinds.insert(name).second)
      return "one press asks twice: \"" + request + "\"";
  }
  if (expectedSteps_ >= 0 && static_cast<int>(commands.size()) != expectedSteps_)
    return std::to_string(commands.size()) + " requests for the hand's " +
           std::to_string(expectedSteps_);
  return {};
}

/// With nothing under way, the panel shows what the radio says.
std::string PanelModel::wrongSettled() {
  settle();
  if (!shown()) return {};
  const MarkedRadio& radio = radios_.radio(*shown());
  steps_.back() += "; the panel comes to rest on " + radio.kind.name;
  if (view().RxMask.visible && radio.online) return "the status box hides a radio that answers";
  if (!radio.online) return {};
  std::string digits;
  for (const Control& digit : view().FrqDigit) {
    if (digit.visible && digit.text != " ") digits += digit.text;
  }
  const std::string frequency =
      radio.frequency == -1 ? "xxxxxxxx" : std::to_string(radio.frequency);
  if (digits != frequency) return "the digits are " + digits + ", the radio is on " + frequency;
  const auto& buttons = view().ModEvent;
  if (buttons[2].visible != radio.kind.agc) return "an AGC that is not there, or the other way";
  if (!radio.kind.silent && buttons[0].text != radio.named('M', radio.mode))
    return "the mode is " + radio.named('M', radio.mode) + ", shown is " + buttons[0].text;
  if (!radio.kind.silent && buttons[1].text != std::to_string(radio.filter))
    return "the filter is " + std::to_string(radio.filter) + ", shown is " + buttons[1].text;
  if (radio.kind.agc && !radio.kind.silent && buttons[2].text != radio.named('A', radio.agc))
    return "the AGC is " + radio.named('A', radio.agc) + ", shown is " + buttons[2].text;
  if (view().SQ.visible != (radio.squelch == 1)) return "the squelch is shown wrongly";
  if (view().HFF.visible != radio.kind.hfFilter) return "the HF filter is shown wrongly";
  if (view().LockImg[0].visible != radio.remote) return "the lock is shown wrongly";
  if (view().FrqDigit[5].enabled != radio.remote) return "the digits are locked wrongly";
  return {};
}

}  // namespace kelvane::fakes
