#pragma once

#include "controls/cls_mod_event.h"
#include "controls/openers.h"
#include "frequency/frq_entry.h"
#include "receiver/indicators.h"
#include "ui/main_view.h"
#include "ui/window_commands.h"

namespace kelvane {

/// The shown receiver's remote control: what it locks on the panel, and taking it or giving it
/// back.
class RemoteState {
 public:
  RemoteState(MainView& view, FrqEntry& entry, clsModEvent& buttons, Indicators& indicators,
              Openers& openers, ReceiverComponent& component, ShownReceiver& shown,
              WindowCommands& window)
      : view_(view),
        entry_(entry),
        buttons_(buttons),
        indicators_(indicators),
        openers_(openers),
        component_(component),
        shown_(shown),
        window_(window) {}

  /// Locks or unlocks the panel's controls as the shown receiver stands, and shows the matching
  /// lock picture.
  void apply();
  /// Takes or gives back remote control; nothing happens while the receiver does not answer. The
  /// display follows when the receiver confirms.
  void set(bool remote);
  /// A click on either lock picture.
  void toggle() { set(!shown_.remote()); }

 private:
  MainView& view_;
  FrqEntry& entry_;
  clsModEvent& buttons_;
  Indicators& indicators_;
  Openers& openers_;
  ReceiverComponent& component_;
  ShownReceiver& shown_;
  WindowCommands& window_;
};

}  // namespace kelvane
