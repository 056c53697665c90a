#include "controls/stepping.h"

#include <algorithm>
#include <string>

#include "base/number.h"

namespace kelvane {

namespace {

constexpr Hz kFirstStep = 500;
constexpr Hz kSmallestStep = 100;
constexpr Hz kLargestStep = 30'000;
constexpr Hz kClickStep = 100;

std::string caption(Hz step) { return std::to_string(step) + "Hz"; }

}  // namespace

Stepping::Stepping(std::array<Control, 2>& VStep, std::array<Control, 2>& IStep,
                   ReceiverComponent& component, FrequencyComponent& frequency,
                   ShownReceiver& shown)
    : VStep_(VStep), component_(component), frequency_(frequency), shown_(shown) {
  own_.fill(kFirstStep);
  for (Control& step : VStep_) {
    step.text = caption(kFirstStep);
    step.tip = "Stepping";
  }
  IStep[0].text = "\u2194";
  IStep[0].tip = "Default step";
  IStep[1].text = "\u2195";
  IStep[1].tip = "Bank step";
  for (Control* label : {&VStep[0], &VStep[1], &IStep[0], &IStep[1]}) {
    label->back = kBlack;
    label->fore = kQuietText;
  }
}

void Stepping::refresh() {
  if (!shown_.exists()) return;
  const Hz most = component_.GetRxMaxStep(shown_.index());
  Hz& own = own_[shown_.index()];
  own = std::min(own, most);
  VStep_[0].text = caption(own);
  const bool known = component_.GetRxFrequency(shown_.index(), kTuned) >= 0;
  VStep_[1].text = known ? caption(std::min<Hz>(most, frequency_.GetFrqBandStep())) : "";
}

void Stepping::receiversChanged(const ReceiverMoves& moves) { moves.carry(own_, kFirstStep); }

void Stepping::click(int index, MouseButton button) {
  if (index != 0) return;
  const Hz direction = button == MouseButton::Left ? 1 : -1;
  Hz& own = own_[shown_.index()];
  own = std::max(std::min(own + direction * kClickStep, kLargestStep), kSmallestStep);
  // The blank is the place of a sign; the next refresh writes the caption without it.
  VStep_[0].text = " " + caption(own);
}

void Stepping::setDefault(Hz step) {
  if (step <= 0) return;
  own_[shown_.index()] = step;
  VStep_[0].text = caption(step);
}

Hz Stepping::defaultStep() const { return nearestLong(num(VStep_[0].text)); }

Hz Stepping::stepOf(Index rx) const { return std::min<Hz>(own_[rx], component_.GetRxMaxStep(rx)); }

Hz Stepping::bandStep() const { return nearestLong(num(VStep_[1].text)); }

}  // namespace kelvane
