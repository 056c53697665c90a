#include "frequency/cls_frq_digit.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "base/number.h"
#include "base/text.h"
#include "ui/control_ids.h"

namespace kelvane {

namespace {

constexpr Colour kIdle{0x80C0FF};

struct DigitLook {
  const char* tip;
  Colour above;
  Colour below;
};
constexpr std::array<DigitLook, FrqDigitControls::kPlaces> kDigitLooks{{
    {"Click to set MHz Value", {0x20E0E0}, {0x40E080}},
    {"Click to set MHz Value", {0x40E0E0}, {0x80E080}},
    {"Click to set MHz Value", {0x40E0E0}, {0x80E080}},
    {"Click to set 100KHz Value", {0x80E0E0}, {0x80E080}},
    {"Click to set 10KHz Value", {0x80E0E0}, {0x80E080}},
    {"Click to set KHz Value", {0x80E0E0}, {0x80E080}},
    {"Click to set 100Hz Value", {0xC0E0E0}, {0xC0E080}},
    {"Click to set 10Hz Value", {0xC0E0E0}, {0xC0E080}},
    {"Click to set Hz Value", {0xC0E0E0}, {0xC0E080}},
}};

int digitsOf(double whole) { return static_cast<int>(decimalText(whole).size()); }

}  // namespace

clsFrqDigit::clsFrqDigit(const FrqDigitControls& controls, WindowCommands& window)
    : controls_(controls), window_(window) {
  for (Control* control :
       {&controls_.FrqFrame, &controls_.FrqDotit, &controls_.FrqFocus, &controls_.FrqBfo})
    control->back = kBlack;
  clearFlags();
  controls_.FrqDotit.fore = kIdle;
  for (int i = 0; i < kPlaces; ++i) {
    controls_.FrqDigit[i].back = kBlack;
    controls_.FrqDigit[i].tip = kDigitLooks[i].tip;
  }
  Assigned(false);
  showAll('x');
}

void clsFrqDigit::Boundary(double max, double min, int resolution) {
  maxValue_ = std::clamp(max, 0.0, kMost);
  minValue_ = std::clamp(min, 0.0, maxValue_);
  firstDigit_ = kPlaces - std::clamp(digitsOf(max), 1, kPlaces);
  const int unused = std::max(static_cast<int>(std::to_string(resolution).size()) - 1, 0);
  lastDigit_ = kLast - (unused > kPlaces ? 0 : unused);
  for (int i = 0; i < kPlaces; ++i) controls_.FrqDigit[i].visible = i >= firstDigit_;
  enableDigits();
}

void clsFrqDigit::BFO(int offset) { controls_.FrqBfo.text = offset ? std::to_string(offset) : ""; }

void clsFrqDigit::BFOState(bool on) { controls_.FrqBfo.fore = on ? kGreen : kRed; }

double clsFrqDigit::Value() const {
  double value = 0;
  for (const Control& digit : controls_.FrqDigit)
    value = value * 10 + (isDigit(digit.text.front()) ? digit.text.front() - '0' : 0);
  return value;
}

void clsFrqDigit::Value(double hertz) {
  if (hertz == -1) {
    showAll('x');
    controls_.FrqBfo.text.clear();
  } else if (hertz >= minValue_ && hertz <= maxValue_) {
    SetValue(hertz);
  }
}

void clsFrqDigit::SetValue(double hertz) {
  double left = std::round(hertz);
  if (!(left >= 0 && left <= kMost)) return showAll('x');
  const int blanks = left == 0 ? 4 : kPlaces - digitsOf(left);
  for (int i = kLast; i >= 0; --i, left = std::floor(left / 10))
    controls_.FrqDigit[i].text =
        i < blanks ? ' ' : static_cast<char>('0' + static_cast<int>(std::fmod(left, 10)));
  overwritten_ = false;
}

int clsFrqDigit::Step() {
  if (typedText_.empty()) return -1;
  const int step = nearestLong(num(typedText_));
  typedText_.clear();
  return step > 30000 ? 1000 : step;
}

bool clsFrqDigit::Chn() {
  const bool channelized = chnPending_;
  setFlags(false, drmPending_);
  return channelized;
}

/// The lamp shows which flags wait for the number that is typed next.
void clsFrqDigit::setFlags(bool channelized, bool drm) {
  chnPending_ = channelized;
  drmPending_ = drm;
  Control& lamp = controls_.FrqDotit;
  lamp.text = channelized && drm ? ":D" : channelized ? ":" : drm ? "D" : "\u25CF";
  lamp.tip.clear();
  if (channelized) lamp.tip = "The number to come is a channelized frequency";
  if (drm) lamp.tip = "The number to come is a DRM frequency";
  if (channelized && drm) lamp.tip = "The number to come is a channelized DRM frequency";
  lamp.spoken = lamp.tip.empty() ? "Entry lamp" : lamp.tip;
}

void clsFrqDigit::LockAll(bool lock) {
  locked_ = lock;
  enableDigits();
  controls_.FrqDotit.enabled = !lock;
  controls_.FrqBfo.enabled = !lock;
  typedText_.clear();
  clearFlags();
  overwritten_ = false;
}

void clsFrqDigit::enableDigits() {
  // A disabled control keeps no keyboard focus: without this every further key would be lost.
  if (digitSelected_ && (locked_ || !selectable(selectedDigit()))) Unselect(true);
  for (int i = 0; i < kPlaces; ++i) controls_.FrqDigit[i].enabled = !locked_ && selectable(i);
}

void clsFrqDigit::Focus(int index, bool on) {
  digitSelected_ = on;
  if (on)
    for (Control& digit : controls_.FrqDigit) digit.selected = false;
  controls_.FrqDigit[index].selected = on;
  controls_.FrqDotit.fore = on ? kGreen : kIdle;
}

void clsFrqDigit::Assigned(bool below) {
  for (int i = 0; i < kPlaces; ++i)
    controls_.FrqDigit[i].fore = below ? kDigitLooks[i].below : kDigitLooks[i].above;
}

void clsFrqDigit::Unselect(bool toTyping) {
  for (int i = 0; i < kPlaces; ++i) Focus(i, false);
  if (!toTyping) return Focus(kLast, true);
  window_.focus(id::FrqFocus);
  // After the focus has moved: the digit that loses it turns the lamp to idle once more.
  controls_.FrqDotit.fore = kRed;
}

int clsFrqDigit::selectedDigit() const {
  const auto& digits = controls_.FrqDigit;
  const auto found = std::find_if(digits.begin(), digits.end(),
                                  [](const Control& digit) { return digit.selected; });
  return static_cast<int>(found - digits.begin());
}

void clsFrqDigit::showAll(char c) {
  for (Control& digit : controls_.FrqDigit) digit.text = c;
  overwritten_ = false;
}

void clsFrqDigit::commit(bool& committed) {
  committed = true;
  overwritten_ = false;
}

}  // namespace kelvane
