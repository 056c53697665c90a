#include "controls/receiver_labels.h"

#include "base/number.h"

namespace kelvane {

namespace {

constexpr Hz kBfoStep = 100;
constexpr Long kNotKnown = -1;

}  // namespace

HfFilter::HfFilter(Control& HFF, ReceiverComponent& component, ShownReceiver& shown)
    : HFF_(HFF), component_(component), shown_(shown) {
  HFF_.tip = "HF FIlter: click to change state";
  HFF_.back = kBlack;
}

void HfFilter::receiverSelected() {
  HFF_.visible = component_.HasRxHFFilter(shown_.index());
  if (HFF_.visible) updated(component_.GetRxHFFilter(shown_.index()));
}

void HfFilter::updated(Long state) {
  HFF_.text = state == kNotKnown ? "HF ?" : state != 0 ? "HF on" : "HF off";
  HFF_.fore = state == kNotKnown ? kQuietText : state != 0 ? kGreen : kRed;
}

void HfFilter::click() {
  // One that is not known to be on is switched on.
  const Long state = component_.GetRxHFFilter(shown_.index()) > 0 ? 0 : 1;
  if (component_.SetRxHFFilter(shown_.index(), state) == Outcome::Done) updated(state);
}

void BfoLabel::receiverSelected() {
  row_.BFO(component_.GetRxBfo(shown_.index()));
  modeChanged();
}

void BfoLabel::modeChanged() {
  row_.BFOState(component_.IsRxBfoMode(shown_.index(), component_.GetRxMode(shown_.index())));
}

void BfoLabel::click(MouseButton button) {
  const double offset = component_.GetRxBfo(shown_.index()).value();
  const double step = button == MouseButton::Left ? kBfoStep : -kBfoStep;
  component_.SetRxBfo(shown_.index(), nearestLong(offset + step));
}

}  // namespace kelvane
