#include "companions/channel_reading.h"

#include <algorithm>
#include <utility>

#include "controls/channel_step.h"

namespace kelvane {

namespace {

constexpr milliseconds kWatch{2000};
/// How long the label shows one number; the values are stored as they arrive.
constexpr milliseconds kPace{50};
/// A fast receiver is not followed number by number for minutes.
constexpr std::size_t kMostUnshown = 40;

}  // namespace

bool ChannelReading::start(Index rx, Instant now) {
  rx_ = rx;
  count_ = component_.GetRxChnCount(rx);
  read_ = 0;
  progress_ = false;
  unshown_.clear();
  watchdog_.stop();
  running_ = component_.ReadRxChannels(rx);
  if (running_)
    watchdog_.start(kWatch, now);
  else
    LChn_.text = "Err";
  return running_;
}

void ChannelReading::arrived(Channel channel, Instant now) {
  progress_ = true;
  ++read_;
  unshown_.push_back(channel);
  if (unshown_.size() > kMostUnshown) unshown_.pop_front();
  if (now >= labelDue_) showNext(now);
}

void ChannelReading::showNext(Instant now) {
  LChn_.text = channelText(unshown_.front(), count_);
  unshown_.pop_front();
  labelDue_ = now + kPace;
}

bool ChannelReading::ended() {
  // Before the first channel it can only be the end of a row that was stopped before.
  if (!running_ || read_ == 0) return false;
  running_ = false;
  return true;
}

void ChannelReading::stop() {
  if (std::exchange(running_, false)) component_.StopRxChannels(rx_);
  unshown_.clear();
  watchdog_.stop();
  LChn_.text.clear();
}

bool ChannelReading::tick(Instant now) {
  if (!unshown_.empty() && now >= labelDue_) showNext(now);
  return watchdog_.fired(now) && watch();
}

bool ChannelReading::watch() {
  const bool stalled = running_ && !std::exchange(progress_, false);
  if (stalled) {
    running_ = false;
    unshown_.clear();
    LChn_.text = "Err";
    component_.StopRxChannels(rx_);
  } else if (!running_ && unshown_.empty()) {
    LChn_.text.clear();
    watchdog_.stop();
  }
  return stalled;
}

Instant ChannelReading::nextDue() const {
  return std::min(watchdog_.due(), unshown_.empty() ? kNever : labelDue_);
}

}  // namespace kelvane
