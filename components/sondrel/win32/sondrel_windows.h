#pragma once

#include <array>
#include <functional>
#include <memory>

#include "components/sondrel/component_windows.h"
#include "components/sondrel/radios/radio_desk.h"
#include "components/sondrel/win32/receiver_window.h"
#include "contract/win32/server/message_boxes.h"

namespace kelvane::sondrel {

/// The component's windows on the screen.
class SondrelWindows final : public ComponentWindows {
 public:
  /// The core is asked for when a window opens: it may be made after this, and must be gone only
  /// after closeAll().
  explicit SondrelWindows(std::function<SondrelCore&()> core) : core_(std::move(core)) {}

  void setOwner(Long window) override { owner_ = window; }
  void editDrivers(DriversModel& model, const std::function<Result<>()>& apply) override;
  void showSettings(Index rx) override;
  void tell(const std::string& words) override { messages_.show("Sondrel", words); }
  void askAgain(const std::string& words, std::function<void()> again) override {
    messages_.ask("Sondrel", words, std::move(again));
  }
  bool retry(const std::string& words) override;
  void closeAll();

 private:
  HWND owner() const;
  RadioDesk& desk();

  std::function<SondrelCore&()> core_;
  Long owner_ = 0;
  std::array<std::unique_ptr<ReceiverWindow>, kMostReceivers> settings_;
  com::MessageBoxes messages_;
  std::unique_ptr<RadioDesk> desk_;
};

}  // namespace kelvane::sondrel
