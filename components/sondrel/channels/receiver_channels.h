#pragma once

#include <filesystem>
#include <functional>
#include <memory>
#include <optional>

#include "base/answer.h"
#include "components/sondrel/channels/channel_keeper.h"
#include "components/sondrel/receiver.h"

namespace kelvane::sondrel {

/// The memory channels of one receiver, of any kind: the channel that it is on, recalling and
/// storing, and the reading of them all, one by one.
class ReceiverChannels {
 public:
  ReceiverChannels(Receiver& receiver, ReceiverHost& host, std::unique_ptr<ChannelKeeper> keeper);

  /// The channel that the receiver is on, -1 for none.
  Channel current() const { return current_; }
  /// What the receiver has now goes into the channel, and the receiver is on it then.
  Outcome store(Channel channel, Instant now);
  /// The receiver takes what the channel holds; on an empty one it stays where it is.
  Outcome select(Channel channel, Instant now);
  /// Limited to what the receiver can do; fails for a mode or an AGC value that it lacks, but 0
  /// stands for its first one then, and a filter of 0 for the mode's usual one.
  Outcome set(Channel channel, const ChannelRecord& record, Instant now);
  /// Channel 0 of a receiver that counts from 1 is cleared in silence.
  Outcome clear(Channel channel, Instant now);
  /// Starts over when a reading runs already. Answers whether it started.
  bool startReading(Instant now);
  /// Ends a reading, with the event that ends its row.
  void stopReading();

  /// Has everything written, as ChannelKeeper::finish does, or into a file of the caller's.
  Result<> finishWriting(const std::filesystem::path& file) {
    return file.empty() ? keeper_->finish() : keeper_->writeTo(file);
  }

  /// A value of the receiver was confirmed: a frequency that is not the channel's leaves it.
  void confirmed(const Change& change);
  /// The link is gone: a reading ends without a word, and there is no current channel.
  void lost();
  void tick(Instant now);
  Instant nextDue() const;

 private:
  bool reachable() const;
  void setCurrent(Channel channel);
  void recall(const ChannelRecord& record, Instant now);
  std::optional<ChannelRecord> limited(const ChannelRecord& record) const;
  void readNext();
  void raiseStatus(Channel channel, const ChannelRecord& record);

  Receiver& receiver_;
  ReceiverHost& host_;
  std::unique_ptr<ChannelKeeper> keeper_;
  Channel current_ = -1;
  Hz tunedTo_ = -1;                 ///< the current channel's frequency, as the receiver took it
  std::uint32_t recall_ = 0;        ///< ticket of the frequency that recalled it
  std::optional<Channel> reading_;  ///< the channel that comes next
  Instant readingDue_ = kNever;
};

}  // namespace kelvane::sondrel
