#include "overview/setting_copy.h"

#include <array>
#include <cstdio>

#include "receiver/shown_receiver.h"

namespace kelvane {

namespace {

void note(std::string& words, const std::string& more) {
  words += (words.empty() ? "" : ", ") + more;
}

void applyMode(ReceiverComponent& component, Index rx, const Text& mode, std::string& missing) {
  if (mode.empty() || component.GetRxModeName(rx, component.GetRxMode(rx)).value() == mode) return;
  const Setting value = component.GetRxModeValue(rx, mode);
  if (value < 0 || component.SetRxMode(rx, value) != Outcome::Done) note(missing, "mode " + mode);
}

void applyAgc(ReceiverComponent& component, Index rx, const Text& agc, std::string& missing) {
  if (agc.empty() || !component.HasRxAgc(rx, -1)) return;
  if (component.GetRxAgcName(rx, component.GetRxAgc(rx)).value() == agc) return;
  const Setting value = component.GetRxAgcValue(rx, agc);
  const bool has = value >= 0 && component.HasRxAgc(rx, value);
  if (!has || component.SetRxAgc(rx, value) != Outcome::Done) note(missing, "AGC " + agc);
}

}  // namespace

SettingCopy settingOf(ReceiverComponent& component, Index rx) {
  SettingCopy setting;
  setting.frequency = component.GetRxFrequency(rx, kTuned);
  if (const Setting mode = component.GetRxMode(rx); mode >= 0)
    setting.mode = component.GetRxModeName(rx, mode);
  if (const Setting agc = component.GetRxAgc(rx); component.HasRxAgc(rx, -1) && agc >= 0)
    setting.agc = component.GetRxAgcName(rx, agc);
  setting.filter = component.GetRxFilter(rx);
  return setting;
}

Result<std::string> applySetting(ReceiverComponent& component, Index rx,
                                 const SettingCopy& setting) {
  if (const Result<> open = checkTakesCommands(component, rx); !open) return open.failure();
  if (setting.frequency < 0) return Failure{"no frequency is known"};
  if (const Result<> in = checkReaches(component, rx, setting.frequency); !in) return in.failure();
  std::string missing;
  applyMode(component, rx, setting.mode, missing);
  if (setting.filter > 0 && component.GetRxFilter(rx) != setting.filter)
    component.SetRxFilter(rx, setting.filter);
  applyAgc(component, rx, setting.agc, missing);
  component.SetRxFrequency(rx, false, setting.frequency);
  return missing;
}

std::string kilohertzText(Hz frequency) {
  std::array<char, 32> text;
  std::snprintf(text.data(), text.size(), "%d.%03d", frequency / 1000, frequency % 1000);
  return text.data();
}

Result<> checkTakesCommands(ReceiverComponent& component, Index rx) {
  if (!component.IsRxOnline(rx)) return Failure{"not connected"};
  if (!component.GetRxRemote(rx)) return Failure{"not under remote control"};
  return {};
}

Result<> checkReaches(ReceiverComponent& component, Index rx, double hertz) {
  const Hz least = component.GetRxFrqMin(rx), most = component.GetRxFrqMax(rx);
  if (hertz >= least && hertz <= most) return {};
  return Failure{"it reaches from " + kilohertzText(least) + " to " + kilohertzText(most) + " kHz"};
}

}  // namespace kelvane
