#pragma once

#include "components/sondrel/component_windows.h"
#include "contract/win32/server/message_boxes.h"

namespace kelvane::sondrel {

/// The component's windows on the screen.
class SondrelWindows final : public ComponentWindows {
 public:
  void setOwner(Long window) override { owner_ = window; }
  void editDrivers(DriversModel&, const std::function<FileResult()>&) override {}
  void showSettings(Index) override {}
  void tell(const std::string& words) override { messages_.show("Sondrel", words); }

 private:
  Long owner_ = 0;
  com::MessageBoxes messages_;
};

}  // namespace kelvane::sondrel
