#include "receiver/indicators.h"

#include <cstdlib>
#include <string>

namespace kelvane {

namespace {

constexpr Colour kDarkGrey = Colour::rgb(64, 64, 64);
constexpr Colour kReading = Colour::rgb(128, 255, 255);
constexpr Long kNumericScale = 1;
constexpr Long kTextScale = 2;

}  // namespace

Indicators::Indicators(Control& SM, Control& SQ, std::array<Control, kLines>& IO,
                       ReceiverComponent& component, ShownReceiver& shown)
    : SM_(SM), SQ_(SQ), IO_(IO), component_(component), shown_(shown) {
  SM_.fore = kReading;
  SM_.back = SQ_.back = kBlack;
  SQ_.fore = kGreen;
  SQ_.text = "SQ";
  SQ_.visible = false;
  for (Control& line : IO_) {
    line.back = kDarkGrey;
    line.visible = false;
  }
}

void Indicators::meter(Long level, const Text& reading) {
  SM_.text = numeric_ ? std::to_string(level) : reading;
}

void Indicators::toggleMeter() {
  numeric_ = !numeric_;
  SM_.text = component_.GetRxSMtText(shown_.index(), numeric_ ? kNumericScale : kTextScale);
}

void Indicators::blank() {
  SM_.text.clear();
  SQ_.visible = false;
}

void Indicators::live() {
  if (const auto state = component_.GetRxSql(shown_.index()); state.ok()) setSquelch(state);
}

void Indicators::otherReceiver() {
  blank();
  for (Control& line : IO_) line.visible = false;
}

void Indicators::lines() {
  // 64 bits: the magnitude of the most negative 32-bit count has no place in 32.
  const long long count =
      shown_.exists() ? std::llabs(component_.GetRxOutCount(shown_.index()).value()) : 0;
  const int shown = count > kLines ? kLines : static_cast<int>(count);
  if (shown == 0) {
    for (Control& line : IO_) line.visible = false;
    return;
  }
  const bool remote = shown_.remote();
  for (int i = 0; i < shown; ++i) {
    IO_[i].visible = true;
    IO_[i].back = kDarkGrey;
    IO_[i].text.clear();
    if (!remote) continue;
    const Answer<Long> state = component_.GetRxOut(shown_.index(), i);
    if (!state.ok()) continue;
    const bool on = state != 0;
    IO_[i].back = on ? kGreen : kRed;
    IO_[i].text = on ? kLampLit : "off";
  }
}

void Indicators::toggleLine(int line) {
  const bool on = component_.GetRxOut(shown_.index(), line) != 0;
  component_.SetRxOut(shown_.index(), line, on ? 0 : 1);
}

}  // namespace kelvane
