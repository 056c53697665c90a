#include "controls/channelized.h"

#include <cstdio>
#include <string>

namespace kelvane {

namespace {

constexpr Colour kFilterTied = Colour::rgb(255, 192, 128);
constexpr Colour kFixed = Colour::rgb(255, 224, 192);

/// Kilohertz with three decimals.
std::string kilohertz(Hz frequency) {
  char text[16];
  std::snprintf(text, sizeof text, "%d.%03d", frequency / 1000, frequency % 1000);
  return text;
}

}  // namespace

Channelized::Channelized(Control& FAlt, clsFrqDigit& row, ReceiverComponent& component,
                         ShownReceiver& shown)
    : FAlt_(FAlt), row_(row), component_(component), shown_(shown) {
  FAlt_.back = kBlack;
  showState();
}

void Channelized::showState() {
  FAlt_.fore = filterTied_ ? kFilterTied : kFixed;
  FAlt_.tip = filterTied_ ? "Filter tied channelized frequency" : "Fixed channelized frequency";
}

void Channelized::show(Hz tuned) {
  const Index rx = shown_.index();
  const Hz boundary = component_.GetRxFrequency(rx, kChannelBoundary);
  row_.Assigned(tuned >= 0 && tuned < boundary);
  const Hz channelized =
      component_.GetRxFrequency(rx, filterTied_ ? kFilterChannelized : kFixedChannelized);
  FAlt_.text = channelized < 0 ? "" : kilohertz(channelized);
}

void Channelized::toggle() {
  filterTied_ = !filterTied_;
  showState();
  show(component_.GetRxFrequency(shown_.index(), kTuned));
}

}  // namespace kelvane
