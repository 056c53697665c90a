#include "components/sondrel/win32/simulated_window.h"

#include <algorithm>
#include <array>
#include <cstdlib>

#include "base/number.h"
#include "base/win32/utf16.h"
#include "components/sondrel/win32/dialog_ids.h"
#include "contract/modes.h"

namespace kelvane::sondrel {

namespace {

constexpr int kMostLines = 8;
constexpr int kLongestTime = 60'000;  // ms
constexpr int kMostAttempts = 1'000'000;
constexpr std::array<Hz, 10> kSteps{1, 10, 50, 100, 500, 1000, 5000, 9000, 10'000, 100'000};
constexpr DWORD kChoice = CBS_DROPDOWNLIST | WS_TABSTOP | WS_VSCROLL;
constexpr DWORD kField = ES_AUTOHSCROLL | WS_TABSTOP;
constexpr DWORD kPush = BS_PUSHBUTTON | WS_TABSTOP;

int chosenIn(HWND box) { return static_cast<int>(SendMessageW(box, CB_GETCURSEL, 0, 0)); }

void choose(HWND box, int row) {
  // A list that the hand has open is not changed under it.
  if (chosenIn(box) == row || SendMessageW(box, CB_GETDROPPEDSTATE, 0, 0)) return;
  SendMessageW(box, CB_SETCURSEL, static_cast<WPARAM>(row), 0);
}

void addChoice(HWND box, const std::string& text) {
  SendMessageW(box, CB_ADDSTRING, 0, reinterpret_cast<LPARAM>(wide(text).c_str()));
}

template <class T>
int rowOf(const std::vector<T>& values, T value) {
  const auto found = std::ranges::find(values, value);
  return found == values.end() ? -1 : static_cast<int>(found - values.begin());
}

}  // namespace

SimulatedWindow::SimulatedWindow(HWND owner, SondrelCore& core, Index rx)
    : ReceiverWindow(owner, core, rx, 440, 386) {
  makeFront();
  makeLink();
  fillChoices();
  SimulatedWindow::refresh();
}

void SimulatedWindow::makeFront() {
  add({id::Label, WC_BUTTONW, BS_GROUPBOX, "At the receiver", {12, 8, 416, 182}});
  add({id::Label, WC_STATICW, 0, "&Frequency, Hz:", {24, 35, 92, 18}});
  add({id::Frequency,
       WC_EDITW,
       kField | ES_NUMBER,
       "",
       {120, 31, 110, 23},
       "The knob: Enter tunes, the wheel turns it by the step"});
  add({id::Tune, WC_BUTTONW, kPush, "&Tune", {240, 30, 84, 25}});
  add({id::Label, WC_STATICW, 0, "&Step, Hz:", {24, 66, 92, 18}});
  add({id::Step, WC_COMBOBOXW, kChoice, "", {120, 62, 110, 240}});
  add({id::StepDown, WC_BUTTONW, kPush, "Step d&own", {240, 61, 84, 25}});
  add({id::StepUp, WC_BUTTONW, kPush, "Step &up", {332, 61, 84, 25}});
  add({id::Label, WC_STATICW, 0, "&Mode:", {24, 97, 92, 18}});
  add({id::Mode, WC_COMBOBOXW, kChoice, "", {120, 93, 110, 240}});
  add({id::Label, WC_STATICW, 0, "F&ilter, Hz:", {252, 97, 76, 18}});
  add({id::Filter, WC_COMBOBOXW, kChoice, "", {332, 93, 84, 240}});
  add({id::Label, WC_STATICW, 0, "Signal:", {24, 128, 92, 18}});
  add({id::Signal, WC_STATICW, SS_NOPREFIX, "", {120, 128, 296, 18}});
  lines_ = std::min(std::abs(core_.simulated(rx_)->can().lines), kMostLines);
  add({id::Label, WC_STATICW, 0, lines_ ? "IO lines:" : "No IO lines", {24, 158, 92, 18}});
  for (int line = 0; line < lines_; ++line)
    add({id::Line + line,
         WC_BUTTONW,
         BS_AUTOCHECKBOX | WS_TABSTOP,
         "&" + std::to_string(line + 1),
         {120 + 37 * line, 157, 35, 18},
         "Switches this line from outside",
         0,
         "IO line " + std::to_string(line + 1)});
}

void SimulatedWindow::makeLink() {
  add({id::Label, WC_BUTTONW, BS_GROUPBOX, "Link", {12, 198, 416, 142}});
  add({id::Label, WC_STATICW, 0, "State:", {24, 220, 120, 18}});
  add({id::State, WC_STATICW, SS_NOPREFIX, "", {150, 220, 260, 18}});
  add({id::Label, WC_STATICW, 0, "F&ault:", {24, 246, 120, 18}});
  add({id::Fault,
       WC_COMBOBOXW,
       kChoice,
       "",
       {150, 242, 266, 280},
       "The state in which opening the link ends; one that is up is lost"});
  add({id::Label, WC_STATICW, 0, "&Heals after attempts:", {24, 277, 124, 18}});
  add({id::HealsAfter, WC_EDITW, kField | ES_NUMBER, "", {150, 273, 60, 23}, "0: it never heals"});
  add({id::Label, WC_STATICW, 0, "&Link takes, ms:", {226, 277, 124, 18}});
  add({id::LinkTime, WC_EDITW, kField | ES_NUMBER, "", {356, 273, 60, 23}});
  add({id::Label, WC_STATICW, 0, "Ans&wers take, ms:", {24, 308, 124, 18}});
  add({id::AnswerTime, WC_EDITW, kField | ES_NUMBER, "", {150, 304, 60, 23}});
  add({id::Apply, WC_BUTTONW, kPush, "Apply fault&s", {332, 303, 84, 25}});
  add({id::Problem, WC_STATICW, SS_NOPREFIX, "", {12, 348, 310, 32}, "", 0, "", true});
  add({IDCANCEL, WC_BUTTONW, kPush, "&Close", {334, 350, 94, 26}});
}

void SimulatedWindow::fillChoices() {
  const SimulatedReceiver& receiver = *core_.simulated(rx_);
  for (const ModeChoice& mode : receiver.can().modes) {
    modes_.push_back(mode.value);
    addChoice(item(id::Mode), std::string(modeName(mode.value)));
  }
  for (const Hz step : kSteps) {
    if (step >= receiver.can().finest && step <= receiver.can().largestStep) steps_.push_back(step);
  }
  if (const Hz now = receiver.newest(Item::Step); now > 0 && rowOf(steps_, now) < 0) {
    steps_.push_back(now);
    std::ranges::sort(steps_);
  }
  for (const Hz step : steps_) addChoice(item(id::Step), std::to_string(step));
  const SimulatedFaults& faults = receiver.faults();
  addChoice(item(id::Fault), "none");
  int fault = 0;
  for (std::size_t i = 0; i < kLinkFaults.size(); ++i) {
    const auto code = static_cast<Long>(kLinkFaults[i]);
    addChoice(item(id::Fault), std::to_string(code) + "  " + std::string(linkFaultWords(code)));
    if (code == faults.code) fault = static_cast<int>(i) + 1;
  }
  choose(item(id::Fault), fault);
  setText(id::HealsAfter, std::to_string(faults.healsAfter));
  setText(id::LinkTime, std::to_string(faults.linkTime.count()));
  setText(id::AnswerTime, std::to_string(faults.answerTime.count()));
}

void SimulatedWindow::refresh() {
  setText(id::State, ReceiverWindow::linkWords());
  setText(id::Signal, signalWords());
  showFrequency();
  showMode();
  showFilters();
  showLines();
  choose(item(id::Step), rowOf(steps_, core_.receiver(rx_)->newest(Item::Step)));
}

void SimulatedWindow::showFrequency() {
  // What the hand is typing stays.
  if (SendMessageW(item(id::Frequency), EM_GETMODIFY, 0, 0)) return;
  setText(id::Frequency, std::to_string(core_.receiver(rx_)->newest(Item::Frequency)));
}

void SimulatedWindow::showMode() {
  choose(item(id::Mode), rowOf(modes_, core_.receiver(rx_)->newest(Item::Mode)));
}

void SimulatedWindow::showFilters() {
  const Receiver& receiver = *core_.receiver(rx_);
  const ModeChoice* mode = receiver.can().mode(receiver.newest(Item::Mode));
  const std::vector<Hz> filters = mode ? mode->filters : std::vector<Hz>();
  if (filters != filters_) {
    filters_ = filters;
    SendMessageW(item(id::Filter), CB_RESETCONTENT, 0, 0);
    for (const Hz filter : filters_) addChoice(item(id::Filter), std::to_string(filter));
  }
  choose(item(id::Filter), rowOf(filters_, receiver.newest(Item::Filter)));
}

void SimulatedWindow::showLines() {
  for (int line = 0; line < lines_; ++line)
    check(id::Line + line, core_.receiver(rx_)->out(line) != 0);
}

void SimulatedWindow::command(int control, int notice) {
  // Between two looks at it the receiver may have gone.
  if (!core_.simulated(rx_)) return close();
  if (control == id::Tune) return tune();
  if (control == id::StepDown) return stepBy(-1);
  if (control == id::StepUp) return stepBy(1);
  if (control == id::Apply) return applyFaults();
  if (control >= id::Line && control < id::Line + kMostLines)
    return lineClicked(control - id::Line);
  if (notice == CBN_SELCHANGE) return chosen(control);
  ReceiverWindow::command(control, notice);
}

int SimulatedWindow::defaultButton() const {
  const int focused = GetDlgCtrlID(GetFocus());
  const bool link = focused >= id::Fault && focused <= id::LinkTime;
  return link ? id::Apply : id::Tune;
}

bool SimulatedWindow::wheel(int notches) {
  if (core_.simulated(rx_)) stepBy(notches);
  return true;
}

void SimulatedWindow::turn(Item item, std::int32_t value) {
  const bool turned = core_.turnKnob(rx_, item, value);
  say(turned ? "" : "The receiver does not answer, or has no such value.");
  refresh();
}

void SimulatedWindow::tune() {
  const auto wanted = number(id::Frequency, "The frequency", 999'999'999);
  if (!wanted) return;
  SendMessageW(item(id::Frequency), EM_SETMODIFY, FALSE, 0);
  turn(Item::Frequency, *wanted);
}

void SimulatedWindow::stepBy(int steps) {
  const int row = chosenIn(item(id::Step));
  const Hz step = row >= 0 ? steps_[static_cast<std::size_t>(row)] : 1;
  SendMessageW(item(id::Frequency), EM_SETMODIFY, FALSE, 0);
  turn(Item::Frequency, nearestLong(core_.receiver(rx_)->newest(Item::Frequency) +
                                    static_cast<double>(steps) * step));
}

void SimulatedWindow::chosen(int control) {
  const auto row = static_cast<std::size_t>(chosenIn(item(control)));
  if (control == id::Mode && row < modes_.size()) turn(Item::Mode, modes_[row]);
  if (control == id::Filter && row < filters_.size()) turn(Item::Filter, filters_[row]);
  if (control == id::Step && row < steps_.size()) turn(Item::Step, steps_[row]);
}

void SimulatedWindow::lineClicked(int line) {
  core_.turnLine(rx_, line, checked(id::Line + line) ? 1 : 0);
  showLines();
}

void SimulatedWindow::applyFaults() {
  const auto heals = number(id::HealsAfter, "The number of attempts", kMostAttempts);
  const auto opening = heals ? number(id::LinkTime, "The link's time", kLongestTime) : heals;
  const auto answer = opening ? number(id::AnswerTime, "The answers' time", kLongestTime) : opening;
  if (!answer) return;
  SimulatedFaults faults = core_.simulated(rx_)->faults();
  const int row = chosenIn(item(id::Fault));
  faults.code = row > 0 ? static_cast<Long>(kLinkFaults[static_cast<std::size_t>(row) - 1]) : 0;
  faults.healsAfter = *heals;
  faults.linkTime = milliseconds(*opening);
  faults.answerTime = milliseconds(*answer);
  core_.setFaults(rx_, faults);
  say("");
  refresh();
}

std::optional<int> SimulatedWindow::number(int field, std::string_view what, int highest) {
  const auto value = wholeNumber(text(field));
  if (value && *value >= 0 && *value <= highest) return static_cast<int>(*value);
  say(std::string(what) + " must be a whole number from 0 to " + std::to_string(highest) + ".");
  SetFocus(item(field));
  return std::nullopt;
}

void SimulatedWindow::say(const std::string& words) { setText(id::Problem, words); }

}  // namespace kelvane::sondrel
