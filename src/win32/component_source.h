#pragma once

#include "contract/win32/event_connection.h"
#include "panel/start_up.h"
#include "win32/panel_window.h"

namespace kelvane::win32 {

/// The components as COM objects, from the files beside the program or as they are registered.
class ComComponents : public ComponentSource {
 public:
  std::unique_ptr<ReceiverComponent> receiver() override;
  std::unique_ptr<FrequencyComponent> frequency() override;

  com::EventConnection listen(ReceiverListener& listener) const;
  com::EventConnection listen(FrequencyListener& listener) const;

 private:
  com::ComPtr<IDispatch> receiver_;
  com::ComPtr<IDispatch> frequency_;
};

/// Hands the frequency component's events to the panel and has the window show what they changed:
/// events do not come through the window's own messages.
class ShownEvents : public FrequencyListener {
 public:
  ShownEvents(FrequencyListener& panel, PanelWindow& window) : panel_(panel), window_(window) {}

#define EVENT(name, params, args) \
  void name params override {     \
    panel_.name args;             \
    window_.changed();            \
  }
#include "contract/ambrel_events.inc"
#undef EVENT

 private:
  FrequencyListener& panel_;
  PanelWindow& window_;
};

}  // namespace kelvane::win32
