#include "components/sondrel/win32/sondrel_windows.h"

#include "base/win32/utf16.h"
#include "components/sondrel/radios/server_program.h"
#include "components/sondrel/win32/drivers_dialog.h"
#include "components/sondrel/win32/system_ports.h"

namespace kelvane::sondrel {

HWND SondrelWindows::owner() const {
  const auto window = reinterpret_cast<HWND>(static_cast<INT_PTR>(owner_));
  return IsWindow(window) ? window : nullptr;
}

void SondrelWindows::editDrivers(DriversModel& model, const std::function<Result<>()>& apply) {
  // A receiver is known by its memories: they stay when it is renamed or moved. The list may hold
  // one that another program added and that is not served here yet.
  const auto linkOf = [&](const std::string& memories) {
    const Receiver* receiver = core_().receiverOf(memories);
    return receiver ? linkWords(receiver) : std::string();
  };
  const auto foundOf = [this](const ReceiverEntry& entry) { return core_().found(entry); };
  const auto applied = [&] {
    Result<> result = apply();
    // Each was of a receiver that may be another one now.
    if (result) closeAll();
    return result;
  };
  // Over a dialog of the owner's that is open already.
  const HWND over = owner() ? GetLastActivePopup(owner()) : nullptr;
  const std::function<Result<>()> confirm = applied;
  const auto deskOf = [this]() -> RadioDesk& { return desk(); };
  const DriversDialog::Programs programs = {
      [this](const std::string& memories) { return core_().shareSight(memories); },
      [this](const std::string& memories, const std::string& program) {
        core_().endProgram(memories, program);
      }};
  DriversDialog(over, model, linkOf, foundOf, deskOf, programs, confirm).runModal();
}

RadioDesk& SondrelWindows::desk() {
  if (!desk_)
    desk_ = std::make_unique<RadioDesk>(RadioDesk::Sources{
        systemSerialPorts, [] { return serverPrograms(programPlaces(), shownRigctld()); },
        keepShownRigctld, outputOf});
  return *desk_;
}

bool SondrelWindows::retry(const std::string& words) {
  const HWND over = IsWindowVisible(owner()) ? GetLastActivePopup(owner()) : nullptr;
  return MessageBoxW(over, wide(words).c_str(), L"Sondrel",
                     MB_RETRYCANCEL | MB_ICONWARNING | MB_SETFOREGROUND) == IDRETRY;
}

void SondrelWindows::showSettings(Index rx) {
  if (!core_().receiver(rx) || rx >= kMostReceivers) return;
  auto& window = settings_[static_cast<std::size_t>(rx)];
  // Of the owner itself: a dialog of the owner's that is open now would take it away with it.
  if (!window || !window->window()) window = makeReceiverWindow(owner(), core_(), rx);
  window->showModeless();
}

void SondrelWindows::closeAll() {
  for (const auto& window : settings_) {
    if (window) window->close();
  }
}

}  // namespace kelvane::sondrel
