#pragma once

#include <deque>
#include <string>

#include "contract/components.h"
#include "ui/control.h"
#include "ui/timer.h"

namespace kelvane {

/// The reading of all channels of a receiver, watched over, with the number of the channel that is
/// being read on the main window's label `LChn`. The component's events drive it, and the time.
class ChannelReading {
 public:
  ChannelReading(ReceiverComponent& component, Control& LChn)
      : component_(component), LChn_(LChn) {}

  /// Answers whether the reading started.
  bool start(Index rx, Instant now);
  /// The receiver has another place among the receivers.
  void moved(Index rx) { rx_ = rx; }
  /// The component reported a channel.
  void arrived(Channel channel, Instant now);
  /// The component reported the end of the row. Answers whether it was the end of this one.
  bool ended();
  /// Ends a reading that runs, and clears the label.
  void stop();
  bool running() const { return running_; }
  /// How many channels have come in.
  Count read() const { return read_; }

  /// Answers whether the receiver has stalled: the reading has ended then.
  bool tick(Instant now);
  Instant nextDue() const;

 private:
  void showNext(Instant now);
  bool watch();

  ReceiverComponent& component_;
  Control& LChn_;
  Index rx_ = 0;
  Count count_ = 0;
  bool running_ = false;
  bool progress_ = false;  ///< a channel came since the watchdog looked last
  Count read_ = 0;
  Timer watchdog_;
  std::deque<Channel> unshown_;
  Instant labelDue_ = Instant::min();
};

}  // namespace kelvane
