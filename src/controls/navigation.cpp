#include "controls/navigation.h"

#include <algorithm>
#include <string>
#include <utility>

namespace kelvane {

Navigation::Navigation(MainView& view, ReceiverComponent& component, FrequencyComponent& frequency,
                       ShownReceiver& shown, BestSetting& best, WindowCommands& window,
                       Refusal& refusal)
    : view_(view),
      component_(component),
      frequency_(frequency),
      shown_(shown),
      best_(best),
      window_(window),
      refusal_(refusal) {
  view_.IBank.tip = "Current Bank";
  view_.VBank.tip = "Record number";
  view_.RNG.tip = "Select region";
  showRegion();
  for (Control* label : {&view_.IBank, &view_.VBank, &view_.RNG}) {
    label->back = kBlack;
    label->fore = kQuietText;
  }
}

void Navigation::step(Walk walk, Long direction) {
  const Hz from = component_.GetRxFrequency(shown_.index(), kTuned);
  if (from == -1) return;
  Target target{};
  frequency_.SetFrqFrequency(from);
  const bool found =
      walk == Walk::Bands ? nextBand(direction, target) : nextKnown(walk, direction, from, target);
  if (!found) {
    frequency_.SetFrqFrequency(from);
    return refusal_.signal();
  }
  tune(target);
}

bool Navigation::tuneTo(Hz frequency, Setting mode, Setting filter) {
  if (!reachable(frequency)) return false;
  clearBank();
  tune({frequency, mode, filter});
  return true;
}

bool Navigation::reachable(Hz frequency) const {
  const Index rx = shown_.index();
  return frequency >= component_.GetRxFrqMin(rx) && frequency <= component_.GetRxFrqMax(rx);
}

bool Navigation::nextBand(Long direction, Target& target) {
  const Index rx = shown_.index();
  const auto kept = [this, rx](Hz frequency) {
    return std::clamp<Hz>(
        frequency, component_.GetRxFrqMin(rx),
        std::max(component_.GetRxFrqMin(rx).value(), component_.GetRxFrqMax(rx).value()));
  };
  const Hz before = frequency_.GetFrqBandStart();
  const Hz next = frequency_.NextFrqBand(direction);
  clearBank();
  if (next < 0) return false;
  Hz frequency = kept(next);
  frequency_.SetFrqFrequency(frequency);
  if (direction < 0) frequency = kept(frequency_.GetFrqBandStart());
  // The same entry again: the walk stands at an end of the plan or of the receiver's range.
  if (frequency_.GetFrqBandStart() == before) return false;
  target = {frequency, frequency_.GetFrqBandMode(), frequency_.GetFrqBandFilter()};
  return true;
}

FrqRecord Navigation::record(Walk walk, Long direction) {
  switch (walk) {
    case Walk::InSet:
      return frequency_.NextFrqInSet(frequency_.GetFrqSet(), direction);
    case Walk::Sets:
      return frequency_.NextFrqSet(direction);
    default:
      return frequency_.NextFrqKnown(direction);
  }
}

bool Navigation::nextKnown(Walk walk, Long direction, Hz from, Target& target) {
  Hz last = from;
  for (Count tried = 0;; ++tried) {
    const FrqRecord next = record(walk, direction);
    if (next.frequency == last || next.frequency < 0) return false;
    if (reachable(next.frequency)) {
      showBank(next);
      target = {next.frequency, frequency_.GetFrqKnownMode(), frequency_.GetFrqKnownFilter()};
      return true;
    }
    // Sets may lead round in a ring, none of which the receiver can tune.
    if (tried >= next.count) return false;
    last = next.frequency;
    frequency_.SetFrqFrequency(last);
  }
}

void Navigation::showBank(const FrqRecord& at) {
  view_.IBank.text = "Kf";
  view_.IBank.tip = frequency_.GetFrqKnownName();
  view_.VBank.text = std::to_string(at.position) + "/" + std::to_string(at.count);
}

void Navigation::tune(const Target& target) {
  const Index rx = shown_.index();
  component_.SetRxFrequency(rx, false, target.frequency);
  window_.runPending();
  if (target.mode >= 0) component_.SetRxMode(rx, target.mode);
  if (target.filter > 0) component_.SetRxFilter(rx, target.filter);
}

void Navigation::clearBank() {
  view_.IBank.text.clear();
  view_.IBank.tip = "Current Bank";
  view_.VBank.text.clear();
}

void Navigation::showRegion() {
  const Long region = frequency_.GetFrqRegion();
  if (std::exchange(region_, region) != region) view_.RNG.text = std::to_string(region + 1) + "R";
}

void Navigation::nextRegion() {
  region_ = frequency_.NextFrqRegion();
  view_.RNG.text = "R" + std::to_string(region_ + 1);
  const Hz tuned = component_.GetRxFrequency(shown_.index(), kTuned);
  if (tuned >= 0 && frequency_.SetFrqFrequency(tuned)) best_.bandName();
}

}  // namespace kelvane
