#include "controls/best_setting.h"

#include <cmath>
#include <cstdlib>
#include <string>

#include "base/number.h"
#include "contract/modes.h"
#include "ui/control_ids.h"
#include "ui/main_controls.h"

namespace kelvane {

namespace {

constexpr Hz kNear = 250;     ///< a known frequency counts this far away
constexpr Hz kVeryNear = 50;  ///< and is called near up to here
constexpr Colour kNormal = Colour::rgb(128, 255, 255);
constexpr Colour kClose = Colour::rgb(255, 255, 0);
constexpr Colour kOff = Colour::rgb(255, 192, 128);
constexpr Colour kOffer = Colour::rgb(255, 224, 96);
constexpr const char* kBandPlan = "Bandplan";
constexpr const char* kBandTip = "Click  to change current band plan";
/// Texts longer than this may not fit the label.
constexpr std::size_t kLongText = 44;

/// The mode that is set where the database recommends one: the first five as they are, the two
/// data modes as upper sideband, others not at all (-1).
Setting settableMode(Setting best) {
  switch (static_cast<Mode>(best)) {
    case Mode::Am:
    case Mode::Fm:
    case Mode::Usb:
    case Mode::Lsb:
    case Mode::Cw:
      return best;
    case Mode::Rtty:
    case Mode::Fax:
      return static_cast<Setting>(Mode::Usb);
    default:
      return -1;
  }
}

}  // namespace

BestSetting::BestSetting(MainView& view, Stepping& stepping, ReceiverComponent& component,
                         FrequencyComponent& frequency, ShownReceiver& shown,
                         const Options& options)
    : view_(view),
      stepping_(stepping),
      component_(component),
      frequency_(frequency),
      shown_(shown),
      options_(options) {
  view_.BMod.tip = "Best computed mode";
  view_.BFlt.tip = "Best computed filter";
  view_.FDif.tip = "Offset from known frequency";
  view_.FDif.text = "-250";
  view_.Band.text = kBandPlan;
  view_.Band.tip = kBandTip;
  for (Control* label : {&view_.Band, &view_.BMod, &view_.BFlt, &view_.FDif}) {
    label->back = kBlack;
    label->fore = kOffer;
  }
  view_.Band.fore = kNormal;
  view_.FDif.visible = view_.BMod.visible = view_.BFlt.visible = false;
}

void BestSetting::refresh(Hz tuned, Apply apply) {
  if (refreshing_) return;
  if (tuned < 0) return nothingKnown();
  refreshing_ = true;
  view_.FDif.visible = false;
  view_.Band.fore = kNormal;
  frequency_.SetFrqFrequency(tuned);
  stepping_.refresh();
  lookUp(tuned);
  if (apply == Apply::Automatic) applyAutomatically();
  compare();
  refreshing_ = false;
}

// What belongs to the receiver shown before must not be taken for this one's.
void BestSetting::nothingKnown() {
  caption(kBandPlan);
  view_.Band.fore = kNormal;
  view_.FDif.visible = view_.BMod.visible = view_.BFlt.visible = false;
  bestMode_ = -1;
  bestFilter_ = 0;
  useRoom();
  stepping_.refresh();
}

void BestSetting::lookUp(Hz tuned) {
  if (frequency_.FindRxKnownFrequency(tuned, kNear)) return showKnown(tuned);
  caption(frequency_.GetFrqBandName());
  bestMode_ = frequency_.GetFrqBandMode();
  bestFilter_ = frequency_.GetFrqBandFilter();
}

void BestSetting::showKnown(Hz tuned) {
  known_ = frequency_.GetRxKnownFrequency();
  const Hz offset = known_ - tuned;
  Text text = frequency_.GetFrqKnownName();
  const Text info = frequency_.GetFrqKnownInfo();
  if (!info.empty()) text += " - " + info;
  // Before what else is known, which may be longer than the line.
  const char* between = " ";
  for (const Text& more :
       {frequency_.GetFrqKnownPath().value(), frequency_.GetFrqNextHere().value()}) {
    if (more.empty()) continue;
    text += "; " + more;
    between = "; ";
  }
  if (!info.empty()) text += between + frequency_.GetFrqKnownExtra().value();
  caption(text);
  if (offset != 0) {
    view_.Band.fore = std::abs(offset) > kVeryNear ? kOff : kClose;
    view_.FDif.text = std::to_string(offset);
    view_.FDif.visible = true;
  }
  bestMode_ = frequency_.GetFrqKnownMode();
  bestFilter_ = frequency_.GetFrqKnownFilter();
}

void BestSetting::caption(const Text& text) {
  view_.Band.text = text;
  view_.Band.tip = text.size() > kLongText ? text + "\n" + kBandTip : kBandTip;
}

void BestSetting::bandName() { caption(frequency_.GetFrqBandName()); }

void BestSetting::applyAutomatically() {
  // A hand on the radio's own knob, while the panel itself is locked.
  if (!component_.GetRxGlobalFlag() || shown_.remote()) return;
  const Index rx = shown_.index();
  const Setting mode = settableMode(bestMode_);
  if (options_.OptAutoMode && component_.GetRxMode(rx) != bestMode_ && mode >= 0)
    component_.SetRxMode(rx, mode);
  if (options_.OptAutoFilter && bestFilter_ > 0 && component_.GetRxFilter(rx) != bestFilter_)
    component_.SetRxFilter(rx, bestFilter_);
}

void BestSetting::compare() {
  const Index rx = shown_.index();
  view_.BMod.visible = bestMode_ >= 0 && component_.GetRxMode(rx) != bestMode_;
  if (view_.BMod.visible) view_.BMod.text = frequency_.GetFrqModeName(bestMode_);
  view_.BFlt.visible = bestFilter_ > 0 && component_.GetRxFilter(rx) != bestFilter_;
  if (view_.BFlt.visible) view_.BFlt.text = std::to_string(bestFilter_);
  useRoom();
}

/// What is recommended is shown in the same line, where it differs from what is set.
void BestSetting::useRoom() { view_.Band.width = widthToTheRight(view_, id::Band); }

void BestSetting::applyMode() {
  if (bestMode_ >= 0) component_.SetRxMode(shown_.index(), bestMode_);
}

void BestSetting::applyFilter() {
  if (bestFilter_ > 0) component_.SetRxFilter(shown_.index(), bestFilter_);
}

void BestSetting::tuneToKnown() {
  // Not what the database stands on now: a walk may have moved it on to where nothing was found.
  if (view_.FDif.visible) component_.SetRxFrequency(shown_.index(), false, known_);
}

}  // namespace kelvane
