#include <algorithm>
#include <cmath>
#include <utility>

#include "base/number.h"
#include "base/text.h"
#include "frequency/cls_frq_digit.h"
#include "ui/control_ids.h"
#include "ui/key_codes.h"

namespace kelvane {

namespace {

constexpr double kDrmOffset = 5000;
constexpr double kPage = 3000;
constexpr std::size_t kDecimals = 3;
/// Leading zeros would otherwise let a typed number grow for ever.
constexpr std::size_t kMostTyped = 32;

double decade(int index) {
  double hertz = 1;
  for (int place = index + 1; place < FrqDigitControls::kPlaces; ++place) hertz *= 10;
  return hertz;
}

double wholeKilohertz(double hertz) { return std::floor(hertz / 1000) * 1000; }

/// What was typed in kHz, in whole hertz: the bare product may miss them by a hair.
double typedHertz(const std::string& typed) { return std::round(num(typed) * 1000); }

bool hasAllDecimals(const std::string& typed) {
  const auto point = typed.find('.');
  return point != std::string::npos && typed.size() > point + kDecimals;
}

}  // namespace

void clsFrqDigit::KeyDown(int& index, int& keyCode, int /*shift*/, double current,
                          bool& committed) {
  committed = false;
  takeOverTyped();
  if (!controls_.FrqDigit[index].enabled) return;
  if (moveByKey(index, keyCode) || tuneByKey(index, keyCode, current, committed)) keyCode = 0;
  Focus(index, true);
}

void clsFrqDigit::KeyPress(int& index, int& keyAscii, double current, bool& committed) {
  committed = false;
  takeOverTyped();
  if (!controls_.FrqDigit[index].enabled) return;
  if (isDigit(keyAscii)) {
    overwrite(index, static_cast<char>(keyAscii));
    moveTo(index, rightOf(index));
  } else if (keyAscii == key::Backspace || keyAscii == ' ') {
    keyAscii = '0';
    overwrite(index, '0');
    moveTo(index, leftOf(index));
  } else {
    if (keyAscii == key::Enter && (current >= 0 || overwritten_)) enterDigits(committed);
    if (keyAscii == key::Escape) {
      clearFlags();
      Unselect(true);
      SetValue(current);
    }
    keyAscii = 0;
  }
}

void clsFrqDigit::ProcessKey(int& keyAscii, double current, bool& committed) {
  committed = false;
  const bool typing = !typedText_.empty();
  const int c = std::exchange(keyAscii, 0);
  if (isDigit(c)) {
    typeDigit(static_cast<char>(c));
  } else if ((c == '.' || c == ',') && typedText_.find('.') == std::string::npos) {
    typedText_ += '.';
  } else if (c == key::Backspace && typing) {
    eraseTyped();
  } else if (c == key::Enter && typing) {
    enterTyped(committed);
  } else if ((c == '+' || c == '-') && typing) {
    const double by = c == '+' ? typedHertz(typedText_) : -typedHertz(typedText_);
    if (current >= 0 && tune(current + by, committed)) typedText_.clear();
  } else if (c == key::Escape) {
    typedText_.clear();
    clearFlags();
    SetValue(current);
  } else if (c == ':') {
    setFlags(true, drmPending_);
  } else if (c == 'D' || c == 'd') {
    setFlags(chnPending_, true);
  } else {
    // An Enter that enters nothing is no unrelated character: the flags wait for their number.
    if (c != key::Enter) clearFlags();
    keyAscii = c;
  }
}

/// A key on a digit ends typing, but the row still shows the number: from here on it is as if its
/// digits had been set one by one.
void clsFrqDigit::takeOverTyped() {
  if (typedText_.empty()) return;
  typedText_.clear();
  overwritten_ = true;
}

bool clsFrqDigit::moveByKey(int& index, int keyCode) {
  if (keyCode != key::Left && keyCode != key::Right) return false;
  moveTo(index, keyCode == key::Right ? rightOf(index) : leftOf(index));
  return true;
}

bool clsFrqDigit::tuneByKey(int index, int keyCode, double current, bool& committed) {
  const bool known = current >= 0;
  switch (keyCode) {
    case key::Up:
    case key::PadPlus:
      if (known) stepValue(decade(index), committed);
      return true;
    case key::Down:
    case key::PadMinus:
      if (known) stepValue(-decade(index), committed);
      return true;
    case key::Delete:
      if (known) {
        overwrite(index, '0');
        commit(committed);
      }
      return true;
    case key::Home:
      if (known) tune(wholeKilohertz(current), committed);
      return true;
    case key::PageUp:
      if (known) tune(current + kPage, committed);
      return true;
    case key::PageDown:
      if (known) tune(current - kPage, committed);
      return true;
    default:
      return false;
  }
}

void clsFrqDigit::stepValue(double by, bool& committed) {
  const double stepped = Value() + by;
  // One below 0 is a frequency out of range here, and not the value that stands for none.
  if (stepped >= 0) Value(stepped);
  commit(committed);
}

void clsFrqDigit::moveTo(int& index, int next) {
  index = next;
  window_.focus(id::FrqDigit + next);
  Focus(next, true);
}

void clsFrqDigit::overwrite(int index, char digit) {
  controls_.FrqDigit[index].text = digit;
  overwritten_ = true;
}

/// Shows and commits a frequency that no bounds were asked for; refuses what the row cannot show.
bool clsFrqDigit::tune(double hertz, bool& committed) {
  if (hertz < 0 || hertz > kMost) return false;
  SetValue(hertz);
  commit(committed);
  return true;
}

void clsFrqDigit::enterDigits(bool& committed) {
  const double entered = std::clamp(Value(), minValue_, maxValue_);
  // Leaving the digit tells the window that the entry is over, and it may show what the receiver
  // has: what was entered is shown after that.
  Unselect(true);
  Value(entered);
  commit(committed);
}

void clsFrqDigit::typeDigit(char digit) {
  window_.focus(id::FrqFocus);
  if (hasAllDecimals(typedText_) || typedText_.size() == kMostTyped) return;
  const std::string longer = typedText_ + digit;
  const double candidate = typedHertz(longer);
  if (candidate > maxValue_) return;
  typedText_ = longer;
  SetValue(candidate);
}

/// A point goes together with the digit before it: alone it would not show.
void clsFrqDigit::eraseTyped() {
  const std::size_t erased = typedText_.back() == '.' ? 2 : 1;
  typedText_.resize(typedText_.size() - std::min(erased, typedText_.size()));
  SetValue(typedHertz(typedText_));
}

void clsFrqDigit::enterTyped(bool& committed) {
  const double typed = typedHertz(typedText_);
  if (typed < minValue_) Value(minValue_);
  if (typed > maxValue_) Value(maxValue_);
  if (drmPending_) Value(Value() + kDrmOffset);
  setFlags(chnPending_, false);
  typedText_.clear();
  commit(committed);
}

}  // namespace kelvane
