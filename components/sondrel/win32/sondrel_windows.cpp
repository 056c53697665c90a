#include "components/sondrel/win32/sondrel_windows.h"

#include <map>

#include "components/sondrel/win32/drivers_dialog.h"

namespace kelvane::sondrel {

HWND SondrelWindows::owner() const {
  const auto window = reinterpret_cast<HWND>(static_cast<INT_PTR>(owner_));
  return IsWindow(window) ? window : nullptr;
}

void SondrelWindows::editDrivers(DriversModel& model, const std::function<FileResult()>& apply) {
  // A receiver is known by its memories: they stay when it is renamed or moved.
  std::map<std::string, Index> places;
  for (const ReceiverEntry& entry : model.receivers())
    places.emplace(entry.memories, static_cast<Index>(places.size()));
  const auto linkOf = [&](const std::string& memories) {
    const auto place = places.find(memories);
    return place == places.end() ? std::string() : linkWords(core_().receiver(place->second));
  };
  const auto foundOf = [this](const ReceiverEntry& entry) { return core_().found(entry); };
  const auto applied = [&] {
    FileResult result = apply();
    // Each was of a receiver that may be another one now.
    if (result) closeAll();
    return result;
  };
  // Over a dialog of the owner's that is open already.
  const HWND over = owner() ? GetLastActivePopup(owner()) : nullptr;
  const std::function<FileResult()> confirm = applied;
  DriversDialog(over, model, linkOf, foundOf, confirm).runModal();
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
