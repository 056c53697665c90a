#pragma once

#include "controls/channel_step.h"
#include "controls/channelized.h"
#include "controls/forwarding.h"
#include "controls/navigation.h"
#include "controls/receiver_labels.h"
#include "frequency/dde_link.h"
#include "panel/remote_state.h"
#include "receiver/level_bars.h"
#include "receiver/status_box.h"

namespace kelvane {

/// The panel's units that speak of the shown receiver.
struct ReceiverUnits {
  FrqEntry& entry;
  RemoteState& remote;
  StatusBox& status;
  Forwarding& forwarding;
  clsModEvent& buttons;
  BfoLabel& bfo;
  HfFilter& hfFilter;
  ChannelStep& channels;
  BestSetting& best;
  Navigation& navigation;
  Channelized& channelized;
  Indicators& indicators;
  LevelBars& levels;
  DdeLink& dde;
};

/// Brings everything that depends on the shown receiver up to date.
class ReceiverRefresh {
 public:
  ReceiverRefresh(MainView& view, const ReceiverUnits& units, ReceiverComponent& component,
                  ShownReceiver& shown)
      : view_(view), units_(units), component_(component), shown_(shown) {}

  /// The shown receiver is another one than before: nothing of the former one's stays. Before
  /// run().
  void otherReceiver();
  /// Another receiver is shown, or its link or its abilities changed.
  void run();
  /// There is no receiver to show.
  void none();
  /// The shown receiver has another frequency.
  void frequency(Hz frequency, Apply apply);

 private:
  void settings(bool online);
  void caption();

  MainView& view_;
  ReceiverUnits units_;
  ReceiverComponent& component_;
  ShownReceiver& shown_;
};

}  // namespace kelvane
