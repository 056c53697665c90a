#include "components/sondrel/channels/receiver_channels.h"

#include <algorithm>
#include <memory>
#include <utility>

namespace kelvane::sondrel {

ReceiverChannels::ReceiverChannels(Receiver& receiver, ReceiverHost& host,
                                   std::unique_ptr<ChannelKeeper> keeper)
    : receiver_(receiver), host_(host), keeper_(std::move(keeper)) {}

void ReceiverChannels::setCurrent(Channel channel) {
  if (channel == current_) return;
  current_ = channel;
  host_.raise(false, [rx = receiver_.index(), channel](ReceiverListener& l) {
    l.RxChnUpdated(rx, channel);
  });
}

Outcome ReceiverChannels::store(Channel channel, Instant now) {
  const Hz frequency = receiver_.newest(Item::Frequency);
  if (!reachable() || !receiver_.can().hasChannel(channel) || frequency <= 0)
    return Outcome::Failed;
  // What the receiver has not told is kept as unknown: a recall leaves it alone.
  keeper_->put(
      channel,
      {frequency, receiver_.newest(Item::Bfo), receiver_.newest(Item::Mode),
       std::max(receiver_.newest(Item::Filter), 0),
       receiver_.can().agc.empty() ? 0 : receiver_.newest(Item::Agc), keeper_->at(channel).skip},
      now);
  tunedTo_ = frequency;
  recall_ = receiver_.ticketOf(Item::Frequency);
  setCurrent(channel);
  return Outcome::Done;
}

/// Both the receiver and what its channels hold.
bool ReceiverChannels::reachable() const { return receiver_.online() && keeper_->known(); }

Outcome ReceiverChannels::select(Channel channel, Instant now) {
  keeper_->refresh();
  if (!reachable() || !receiver_.can().hasChannel(channel)) return Outcome::Failed;
  const ChannelRecord record = keeper_->at(channel);
  // Before anything is asked of the receiver: it may answer at once.
  tunedTo_ = record.empty() ? receiver_.newest(Item::Frequency)
                            : receiver_.can().nearestFrequency(record.frequency);
  recall_ = record.empty() ? 0 : receiver_.nextTicket();
  if (!record.empty()) recall(record, now);
  setCurrent(channel);
  return Outcome::Done;
}

void ReceiverChannels::recall(const ChannelRecord& record, Instant now) {
  const auto ask = [&](Item item, std::int32_t value) {
    receiver_.request(item, value, Cause::Request, now);
  };
  ask(Item::Frequency, record.frequency);
  ask(Item::Mode, record.mode);
  if (record.filter != 0) ask(Item::Filter, record.filter);
  ask(Item::Agc, record.agc);
  ask(Item::Bfo, record.bfo);
}

std::optional<ChannelRecord> ReceiverChannels::limited(const ChannelRecord& record) const {
  const Capabilities& can = receiver_.can();
  ChannelRecord result = record;
  // Who fills in a channel that was empty may have chosen neither mode nor AGC: they are 0 then,
  // a value that not every receiver has.
  if (record.mode == 0 && !can.mode(0) && !can.modes.empty()) result.mode = can.modes.front().value;
  const bool modeKnown = record.mode != unknownValue(Item::Mode);
  const bool agcKnown = record.agc != unknownValue(Item::Agc);
  if (modeKnown && !can.mode(result.mode)) return std::nullopt;
  if (can.agc.empty()) {
    result.agc = 0;
  } else if (record.agc == 0) {
    result.agc = can.agc.front().value;
  }
  if (!can.agc.empty() && agcKnown && !choiceOf(can.agc, result.agc)) return std::nullopt;
  result.frequency = can.nearestFrequency(record.frequency);
  result.bfo = can.hasBfo() ? can.nearestBfo(record.bfo) : 0;
  if (modeKnown) {
    result.filter = record.filter != 0 ? can.nearestFilter(result.mode, record.filter)
                                       : can.mode(result.mode)->usual;
  }
  result.skip = can.channelSkip && record.skip != 0 ? 1 : 0;
  return result;
}

Outcome ReceiverChannels::set(Channel channel, const ChannelRecord& record, Instant now) {
  if (!reachable() || !receiver_.can().hasChannel(channel)) return Outcome::Failed;
  if (record.frequency <= 0) return clear(channel, now);
  const auto accepted = limited(record);
  if (!accepted) return Outcome::Failed;
  keeper_->put(channel, *accepted, now);
  return Outcome::Done;
}

Outcome ReceiverChannels::clear(Channel channel, Instant now) {
  const Capabilities& can = receiver_.can();
  if (!reachable() || can.channelCount == 0) return Outcome::Failed;
  if (channel == 0 && can.firstChannel == 1) return Outcome::Done;
  if (!can.hasChannel(channel)) return Outcome::Failed;
  keeper_->put(channel, {}, now);
  return Outcome::Done;
}

bool ReceiverChannels::startReading(Instant now) {
  const ChannelReading how = receiver_.channelReading();
  keeper_->refresh();
  if (!reachable() || receiver_.can().channelCount == 0 || !how.starts) return false;
  reading_ = receiver_.can().firstChannel;
  readingDue_ = now + how.each;
  return true;
}

void ReceiverChannels::stopReading() {
  if (!reading_) return;
  reading_.reset();
  raiseStatus(-1, {});
}

void ReceiverChannels::confirmed(const Change& change) {
  if (change.item != Item::Frequency || current_ < 0) return;
  // The receiver may have rounded the channel's frequency; that is where it is on the channel.
  if (recall_ != 0 && change.ticket == recall_) tunedTo_ = change.value;
  if (receiver_.newest(Item::Frequency) != tunedTo_) setCurrent(-1);
}

void ReceiverChannels::lost() {
  reading_.reset();
  setCurrent(-1);
}

void ReceiverChannels::tick(Instant now) {
  keeper_->tick(now);
  while (reading_ && now >= readingDue_) readNext();
}

Instant ReceiverChannels::nextDue() const {
  return std::min(keeper_->nextDue(), reading_ ? readingDue_ : kNever);
}

void ReceiverChannels::readNext() {
  const ChannelReading how = receiver_.channelReading();
  const Channel channel = *reading_;
  if (how.stallsAfter && channel - receiver_.can().firstChannel >= *how.stallsAfter) {
    readingDue_ = kNever;
    return;
  }
  if (!receiver_.can().hasChannel(channel)) return stopReading();
  raiseStatus(channel, keeper_->at(channel));
  reading_ = channel + 1;
  readingDue_ += how.each;
}

void ReceiverChannels::raiseStatus(Channel channel, const ChannelRecord& r) {
  host_.raise(false, [rx = receiver_.index(), channel, r](ReceiverListener& l) {
    l.RxChnStatus(rx, channel, r.frequency, r.bfo, r.mode, r.filter, r.agc, r.skip);
  });
}

}  // namespace kelvane::sondrel
