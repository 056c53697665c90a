#include "panel/key_commands.h"

#include <algorithm>
#include <cmath>

#include "base/number.h"
#include "base/text.h"
#include "ui/key_codes.h"

namespace kelvane {

namespace {

constexpr Hz kNearKnown = 250;
/// No frequency in kHz is written longer.
constexpr std::size_t kLongestNumber = 32;

bool isArrow(int keyCode) { return keyCode >= key::Left && keyCode <= key::Down; }

/// The modifiers as the rows name them: an arrow takes the strongest one alone, Alt before Ctrl
/// before Shift, and the keypad's signs do not mind Shift.
int rowShift(int keyCode, int shift) {
  if (keyCode == key::F6) return shift;
  if (!isArrow(keyCode)) return shift & (key::CtrlHeld | key::AltHeld);
  for (const int modifier : {key::AltHeld, key::CtrlHeld, key::ShiftHeld}) {
    if (shift & modifier) return modifier;
  }
  return 0;
}

/// With Ctrl or Alt the main keyboard's signs are the keypad's; alone they come as characters.
int keypadSign(int keyCode, int shift) {
  if ((shift & (key::CtrlHeld | key::AltHeld)) == 0) return keyCode;
  if (keyCode == key::MainPlus) return key::PadPlus;
  return keyCode == key::MainMinus ? key::PadMinus : keyCode;
}

/// Keys that are only held while another one is pressed.
bool isModifier(int keyCode) { return keyCode >= key::ShiftKey && keyCode <= key::AltKey; }

/// The number of kHz that a text begins with, with either point; 0 where there is none, and where
/// more points or an exponent leave open what is meant.
double kilohertz(std::string_view text) {
  text.remove_prefix(std::min(text.find_first_not_of(" \t\r\n"), text.size()));
  const std::size_t length = std::min(text.find_first_not_of("0123456789.,"), text.size());
  std::string number(text.substr(0, std::min(length, kLongestNumber + 1)));
  std::replace(number.begin(), number.end(), ',', '.');
  const bool exponent = length < text.size() && (text[length] == 'e' || text[length] == 'E');
  const bool clear = number.size() <= kLongestNumber && !exponent &&
                     std::count(number.begin(), number.end(), '.') <= 1;
  return clear ? num(number) : 0;
}

}  // namespace

const CommandRow* KeyCommands::find(CommandRow::Input input, int code, int shift) const {
  const CommandRow* found = nullptr;
  for (const CommandRow& row : commandRows()) {
    if (row.input != input || row.code != code || row.shift != shift) continue;
    if (!row.prefix.empty() && row.prefix == CommandPrefix_) return &row;
    if (row.prefix.empty() && !awaitsSign(code, shift)) found = &row;
  }
  return found;
}

/// A letter waits for another key than a sign, which then steps no band.
bool KeyCommands::awaitsSign(int code, int shift) const {
  const bool sign = code == key::PadPlus || code == key::PadMinus || code == '+' || code == '-';
  return sign && shift == 0 && !CommandPrefix_.empty();
}

bool KeyCommands::allowed(const CommandRow& row) const {
  return row.needs != CommandRow::Needs::Remote || !shown_.locked();
}

void KeyCommands::endPair() {
  CommandPrefix_.clear();
  if (shown_.exists()) component_.EndRxKeys(shown_.index());
}

/// A letter that was typed for another receiver waits no longer.
void KeyCommands::receiverMayHaveChanged() {
  if (keysFor_ == shown_.index()) return;
  CommandPrefix_.clear();
  if (keysFor_ >= 0 && shown_.exists()) component_.EndRxKeys(keysFor_);
  keysFor_ = shown_.index();
}

bool KeyCommands::keyDown(int keyCode, int shift, bool onDigit) {
  receiverMayHaveChanged();
  const int held = rowShift(keyCode, shift);
  keyCode = keypadSign(keyCode, held);
  const CommandRow* row = find(CommandRow::Input::Key, keyCode, held);
  const bool ofPanel = row && row->needs == CommandRow::Needs::Panel;
  if (ofPanel) (this->*row->run)();
  if (onDigit || row_.Processed()) {
    navigation_.clearBank();
    if (!isModifier(keyCode)) endPair();
    return ofPanel;
  }
  if (ofPanel) return true;
  const bool sign = keyCode == key::PadPlus || keyCode == key::PadMinus;
  if (!row || !allowed(*row)) return false;
  // A number that is typed is added or subtracted: the row takes the sign as a character.
  if (sign && held == 0 && !row_.TypedText().empty()) return false;
  // A walk that finds no further record leaves the place of the last one.
  if (!sign || held == 0) navigation_.clearBank();
  (this->*row->run)();
  endPair();
  return true;
}

bool KeyCommands::keyPress(int character, bool onDigit) {
  receiverMayHaveChanged();
  if (onDigit) {
    endPair();
    return false;
  }
  character = upperLetter(character);
  const CommandRow* row = find(CommandRow::Input::Character, character, 0);
  if (shown_.locked()) {
    if (row && allowed(*row)) {
      (this->*row->run)();
      endPair();
    }
    return true;
  }
  const bool control = character == 3 || character == 22;
  if (!control && (takenByReceiver(character) || takenByRow(character))) return true;
  row = find(CommandRow::Input::Character, character, 0);
  if (!row) {
    becomePrefix(character);
    return true;
  }
  keepsPrefix_ = false;
  (this->*row->run)();
  if (!keepsPrefix_) endPair();
  return true;
}

bool KeyCommands::takenByReceiver(int character) {
  const std::string key(1, static_cast<char>(character));
  if (character > 0x7F || !component_.RxKeyPress(shown_.index(), key)) return false;
  CommandPrefix_.clear();
  return true;
}

bool KeyCommands::takenByRow(int character) {
  const FrqEntry::Typed typed = entry_.typed(character);
  if (typed == FrqEntry::Typed::Committed) {
    CommandPrefix_.clear();
    navigation_.clearBank();
    return true;
  }
  // What the row ate and no letter command may see: point, sign, Backspace, Enter.
  return typed == FrqEntry::Typed::Taken && (character == '+' || character == '-');
}

void KeyCommands::becomePrefix(int character) {
  if (character == '+' || character == '-' || character == key::Backspace) return endPair();
  if (character > ' ' && character < 0x7F) CommandPrefix_.assign(1, static_cast<char>(character));
}

void KeyCommands::nextReceiver() { tabs_.next(); }

void KeyCommands::copyFrequency() {
  const Hz frequency = component_.GetRxFrequency(shown_.index(), kTuned);
  if (frequency != -1) clipboard_.setText(decimalText(frequency / 1000.0));
}

void KeyCommands::pasteFrequency() {
  const Index rx = shown_.index();
  const double frequency = kilohertz(clipboard_.text()) * 1000;
  if (frequency == 0 || frequency < component_.GetRxFrqMin(rx) ||
      frequency > component_.GetRxFrqMax(rx))
    return refusal_.signal();
  component_.SetRxFrequency(rx, false, nearestLong(frequency));
  navigation_.clearBank();
}

std::optional<int> KeyCommands::typedNumber() {
  const int number = row_.Step();
  if (number < 0) return std::nullopt;
  showReceiver();
  return number;
}

void KeyCommands::showReceiver() {
  entry_.arrived(component_.GetRxFrequency(shown_.index(), kTuned));
}

void KeyCommands::setFilter() {
  const auto number = typedNumber();
  if (number)
    component_.SetRxFilter(shown_.index(), *number);
  else {
    CommandPrefix_ = "F";
    keepsPrefix_ = true;
  }
}

void KeyCommands::setBfo() {
  const Index rx = shown_.index();
  const auto number = typedNumber();
  if (number && *number > component_.GetRxBfoMin(rx) && *number < component_.GetRxBfoMax(rx))
    component_.SetRxBfo(rx, *number);
  else
    refusal_.signal();
}

void KeyCommands::recallChannel() {
  const Index rx = shown_.index();
  const auto number = typedNumber();
  if (!number || *number < component_.GetRxChnFirst(rx)) {
    CommandPrefix_ = "C";
    keepsPrefix_ = true;
  } else if (*number < component_.GetRxChnCount(rx)) {
    component_.SelectRxChannel(rx, *number);
  } else {
    refusal_.signal();
  }
}

void KeyCommands::storeChannel() {
  const Index rx = shown_.index();
  const auto number = typedNumber();
  const Count count = component_.GetRxChnCount(rx);
  if (count == 0) return;
  if (!number || *number < component_.GetRxChnFirst(rx)) return openers_.channels();
  if (*number < count)
    component_.StoreRxChannel(rx, *number);
  else
    refusal_.signal();
}

void KeyCommands::logAndRecord() {
  keepsPrefix_ = true;
  openers_.logAndRecord();
}

void KeyCommands::log() {
  keepsPrefix_ = true;
  openers_.log();
}

void KeyCommands::tuneBy(Hz step, int direction) {
  const Hz frequency = component_.GetRxFrequency(shown_.index(), kTuned);
  if (frequency != -1)
    component_.SetRxFrequency(shown_.index(), false,
                              nearestLong(double(frequency) + double(direction) * step));
}

void KeyCommands::localStep(int direction) {
  if (const auto number = typedNumber())
    return *number > 0 ? stepping_.setDefault(*number) : refusal_.signal();
  tuneBy(stepping_.defaultStep(), direction);
}

void KeyCommands::home() {
  const Index rx = shown_.index();
  const Hz frequency = component_.GetRxFrequency(rx, kTuned);
  if (frequency == -1) return;
  const bool known = frequency_.FindRxKnownFrequency(frequency, kNearKnown);
  const Hz target = known ? frequency_.GetRxKnownFrequency().value()
                          : nearestLong(std::floor(row_.Value() / 1000) * 1000);
  component_.SetRxFrequency(rx, false, target);
}

}  // namespace kelvane
