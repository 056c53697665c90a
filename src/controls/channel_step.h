#pragma once

#include <string>

#include "receiver/shown_receiver.h"
#include "ui/main_view.h"

namespace kelvane {

/// A channel number as the panel and the channel list write it: two digits at least, three where
/// the receiver has 101 channels or more.
std::string channelText(Channel channel, Count count);

/// The memory channel's labels, and stepping from one channel to the next.
class ChannelStep {
 public:
  ChannelStep(MainView& view, ReceiverComponent& component, ShownReceiver& shown);

  /// Shows the labels where the receiver has channels, and the current one.
  void receiverSelected();
  /// The current channel changed; -1 for none.
  void updated(Channel channel);
  /// Selects the next (1) or previous (-1) channel, round the ends; the first one when there is no
  /// current channel.
  void step(Long direction);

 private:
  MainView& view_;
  ReceiverComponent& component_;
  ShownReceiver& shown_;
};

}  // namespace kelvane
