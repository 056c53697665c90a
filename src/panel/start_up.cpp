#include "panel/start_up.h"

namespace kelvane {

namespace {

constexpr const char* kNoReceiverControl = "Error: Receiver Control (Sondrel.dll) not found";
constexpr const char* kNoReceiver = "Error: No configured receiver found";
constexpr const char* kNoFrequencyControl = "Error: Frequency control (Ambrel.dll) not found";
constexpr Long kOpen = 0;
constexpr Long kConfigureDrivers = 1;

}  // namespace

bool StartUp::refuse(const std::string& text) {
  boxes_.show(text, {}, Buttons::Ok);
  return false;
}

bool StartUp::openComponents(const std::string& instance, std::int32_t ownerWindow) {
  return openReceiver(instance, ownerWindow) && openFrequency(instance, ownerWindow);
}

bool StartUp::openReceiver(const std::string& instance, std::int32_t ownerWindow) {
  receiver_ = components_.receiver();
  if (!receiver_) return refuse(kNoReceiverControl);
  receiver_->SetRxOwner(ownerWindow);
  const auto configured = receiver_->OpenRxConfig(instance, kOpen);
  if (!configured.ok()) return refuse(kNoReceiverControl);
  // The operator knows why already.
  if (configured == kGivenUp) return false;
  if (configured > 0) return true;
  refuse(kNoReceiver);
  return receiver_->OpenRxConfig(instance, kConfigureDrivers) > 0;
}

bool StartUp::openFrequency(const std::string& instance, std::int32_t ownerWindow) {
  frequency_ = components_.frequency();
  if (!frequency_) return refuse(kNoFrequencyControl);
  frequency_->SetFrqOwner(ownerWindow);
  const bool open = frequency_->OpenFrqConfig(instance) == Outcome::Done &&
                    frequency_->InitFrqPlan(0) == Outcome::Done;
  return open || refuse(kNoFrequencyControl);
}

bool handleWithoutPanel(const CommandLine& line, SettingsStore& settings, MessageBoxes& boxes,
                        PanelClaim& panel) {
  switch (line.action) {
    case CommandLine::Action::Usage:
      boxes.show(usageText(), {}, Buttons::Ok);
      return true;
    case CommandLine::Action::Clean:
      if (!panel.claim()) {
        boxes.show(runningNotice(line.instance), {}, Buttons::Ok);
        return true;
      }
      boxes.show(cleaningNotice(line.instance), {}, Buttons::Ok);
      settings.erase();
      return true;
    default: {
      const PanelClaim::Result result = panel.claimOrShow();
      if (result == PanelClaim::Result::Silent)
        boxes.show(silentNotice(line.instance), {}, Buttons::Ok);
      return result != PanelClaim::Result::Ours;
    }
  }
}

}  // namespace kelvane
