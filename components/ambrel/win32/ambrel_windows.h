#pragma once

#include <windows.h>

#include <memory>

#include "components/ambrel/component_windows.h"
#include "components/ambrel/win32/data_window.h"
#include "components/ambrel/win32/known_list_window.h"
#include "components/ambrel/win32/source_window.h"
#include "contract/win32/server/message_boxes.h"

namespace kelvane::ambrel {

/// The component's windows on the screen.
class AmbrelWindows final : public ComponentWindows {
 public:
  void setOwner(Long window) override { owner_ = window; }
  void showKnownList(AmbrelCore& core) override;
  void showSource(AmbrelCore& core) override;
  /// Leaves the keyboard where it is: the key that opens this window may begin a frequency.
  void showData(AmbrelCore& core) override;
  void moved() override;
  /// Data, a load or the time may be others now: the windows that are open look at them.
  void follow();
  void askAgain(const std::string& words, std::function<void()> again) override {
    messages_->ask("Ambrel", words, std::move(again));
  }
  /// To be called before the core ends.
  void closeAll();

 private:
  HWND owner() const;

  Long owner_ = 0;
  std::unique_ptr<KnownListWindow> list_;
  std::unique_ptr<SourceWindow> source_;
  std::unique_ptr<DataWindow> data_;
  std::unique_ptr<com::MessageBoxes> messages_ = std::make_unique<com::MessageBoxes>();
};

}  // namespace kelvane::ambrel
