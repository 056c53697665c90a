#include "controls/cls_mod_event.h"

#include <string>

namespace kelvane {

namespace {

constexpr Colour kCarrierMode = Colour::rgb(128, 255, 255);
constexpr Colour kOtherMode = Colour::rgb(192, 254, 255);
constexpr Setting kUnknown = -1;
constexpr Setting kAny = -1;
constexpr const char* kNothing = "----";

constexpr std::array<const char*, clsModEvent::kButtons> kUnknownCaptions = {
    kNothing, kNothing, "AGC:--", "Att:--", "NB:--"};
constexpr std::array<const char*, clsModEvent::kButtons> kTips = {
    "Cycle through Modes settings", "Cycle through Filters settings", "Cycle through AGC settings",
    "Cycle through Attenuator settings", "Cycle through Noise Blanker settings"};

}  // namespace

clsModEvent::clsModEvent(std::array<Control, kButtons>& buttons, ReceiverComponent& oReceiver)
    : buttons_(buttons), oReceiver_(oReceiver) {
  for (int i = 0; i < kButtons; ++i) buttons_[i].tip = kTips[i];
  otherReceiver();
}

void clsModEvent::LockAll(bool lock) {
  for (Control& button : buttons_) button.enabled = !lock;
}

void clsModEvent::otherReceiver() {
  for (int i = 0; i < kButtons; ++i) buttons_[i].text = kUnknownCaptions[i];
  buttons_[Mode].back = kOtherMode;
}

void clsModEvent::Update(Index rx) {
  buttons_[Agc].visible = oReceiver_.HasRxAgc(rx, kAny);
  if (buttons_[Agc].visible) {
    const Setting agc = oReceiver_.GetRxAgc(rx);
    oReceiver_.GetRxAgcAux(rx, agc);
    AgcUpdated(rx, agc);
  }
  buttons_[Attenuator].visible = oReceiver_.HasRxAtt(rx, kAny);
  if (buttons_[Attenuator].visible)
    AttUpdated(rx, oReceiver_.GetRxAtt(rx), oReceiver_.GetRxAttDb(rx));
  buttons_[NoiseBlanker].visible = oReceiver_.HasRxNBl(rx, kAny);
  if (buttons_[NoiseBlanker].visible) {
    const Setting blanker = oReceiver_.GetRxNBl(rx);
    oReceiver_.GetRxNBlAux(rx, blanker);
    NBlUpdated(rx, blanker);
  }
  filterChoice(rx);
  ModUpdated(rx, oReceiver_.GetRxMode(rx));
  if (const auto filter = oReceiver_.GetRxFilter(rx); filter.ok()) FilterUpdated(rx, filter);
}

void clsModEvent::filterChoice(Index rx) {
  buttons_[Filter].enabled = oReceiver_.GetRxFilterCount(rx) != 1 && buttons_[Mode].enabled;
}

Outcome clsModEvent::Click(Index rx, int button) {
  switch (button) {
    case Mode:
      return oReceiver_.NextRxMode(rx);
    case Filter:
      return oReceiver_.NextRxFilter(rx);
    case Agc:
      return oReceiver_.NextRxAgc(rx);
    case Attenuator:
      return oReceiver_.NextRxAtt(rx);
    case NoiseBlanker:
      return oReceiver_.NextRxNBl(rx);
    default:
      return Outcome::Failed;
  }
}

void clsModEvent::ModUpdated(Index rx, Setting mode) {
  if (mode == kUnknown) return;
  buttons_[Mode].text = oReceiver_.GetRxModeName(rx, mode);
  buttons_[Mode].back = oReceiver_.GetRxModeFlag(rx, mode) ? kCarrierMode : kOtherMode;
}

void clsModEvent::FilterUpdated(Index, Setting filter) {
  if (filter == kUnknown) return;
  buttons_[Filter].text = filter != 0 ? std::to_string(filter) : kNothing;
}

void clsModEvent::AgcUpdated(Index rx, Setting agc) {
  if (agc != kUnknown) buttons_[Agc].text = oReceiver_.GetRxAgcName(rx, agc);
}

void clsModEvent::NBlUpdated(Index rx, Setting blanker) {
  if (blanker == kUnknown) return;
  const Text name = oReceiver_.GetRxNBlName(rx, oReceiver_.GetRxNBl(rx));
  buttons_[NoiseBlanker].text = blanker == 0 ? "NB:" + name : name;
}

void clsModEvent::AttUpdated(Index rx, Setting attenuator, Long db) {
  if (attenuator == kUnknown) return;
  buttons_[Attenuator].text =
      attenuator != 0 ? std::to_string(db) + "dB" : "Att:" + oReceiver_.GetRxAttName(rx, 0).value();
}

}  // namespace kelvane
