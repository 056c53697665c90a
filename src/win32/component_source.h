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

/// Hands the components' events to the panel and has the window show what they changed: events do
/// not come through the window's own messages.
class ShownEvents : public ReceiverListener, public FrequencyListener {
 public:
  ShownEvents(MAin& panel, PanelWindow& window)
      : receiver_(panel.receiverEvents()), frequency_(panel.frequencyEvents()), window_(window) {}

#define EVENT(name, params, args) \
  void name params override {     \
    receiver_.name args;          \
    window_.changed();            \
  }
#include "contract/sondrel_events.inc"
#undef EVENT
#define EVENT(name, params, args) \
  void name params override {     \
    frequency_.name args;         \
    window_.changed();            \
  }
#include "contract/ambrel_events.inc"
#undef EVENT

 private:
  ReceiverListener& receiver_;
  FrequencyListener& frequency_;
  PanelWindow& window_;
};

}  // namespace kelvane::win32
