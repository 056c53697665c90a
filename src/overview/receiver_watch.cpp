#include "overview/receiver_watch.h"

#include <utility>

#include "controls/forwarding.h"

namespace kelvane {

ReceiverWatch::ReceiverWatch(ReceiverComponent& component, const ShownReceiver& shown,
                             const LevelBars& levels, const Forwarding& forwarding, Clocks clocks)
    : component_(component),
      shown_(shown),
      levels_(levels),
      forwarding_(forwarding),
      clocks_(std::move(clocks)),
      moves_(component) {}

LevelTime ReceiverWatch::now() {
  const LevelTime now = clock_.at(clocks_.now(), clocks_.wall());
  if (!clock_.slept()) return now;
  for (const Receiver& receiver : receivers_) receiver.history->gap();
  return now;
}

void ReceiverWatch::level(Index rx, Long level, const Text& reading) {
  if (!valid(rx)) return;
  const LevelTime when = now();
  Receiver& receiver = receivers_[rx];
  receiver.reading = reading;
  receiver.history->add(when, level);
  const auto last = receiver.history->last();
  if (listener_ && last && last->when == when)
    listener_->heard(rx, clock_.utc(when), receiver.settings.frequency, last->level);
}

void ReceiverWatch::squelch(Index rx, Long state) {
  if (valid(rx)) receivers_[rx].squelch = state;
}

void ReceiverWatch::frequency(Index rx, Hz frequency, bool atReceiver) {
  if (!valid(rx)) return;
  const Hz before = std::exchange(receivers_[rx].told, frequency);
  settings(rx);
  if (frequency < 0 || frequency == before) return;
  // What a link tells first was nobody's doing now.
  if (before >= 0)
    moves_.moved(rx, frequency, atReceiver, forwarding_.mode(), shown_.index(), clocks_.now(),
                 clocks_.wall());
}

void ReceiverWatch::settings(Index rx) {
  if (valid(rx)) readSettings(rx);
}

void ReceiverWatch::readSettings(Index rx) {
  Receiver& receiver = receivers_[rx];
  LevelSettings told;
  told.frequency = component_.GetRxFrequency(rx, kTuned);
  if (const Setting mode = component_.GetRxMode(rx); mode >= 0)
    told.mode = component_.GetRxModeName(rx, mode);
  told.filter = component_.GetRxFilter(rx);
  if (const Setting agc = component_.GetRxAgc(rx); component_.HasRxAgc(rx, -1) && agc >= 0)
    told.agc = component_.GetRxAgcName(rx, agc);
  if (component_.HasRxAtt(rx, -1) && component_.GetRxAtt(rx) >= 0)
    told.attenuation = component_.GetRxAttDb(rx);
  if (told == receiver.settings) return;
  receiver.settings = std::move(told);
  receiver.unchanged = now();
  receiver.history->tuned(receiver.unchanged, receiver.settings.frequency);
}

void ReceiverWatch::link(Index rx) {
  if (!valid(rx)) return;
  Receiver& receiver = receivers_[rx];
  if (component_.IsRxOnline(rx)) {
    readSettings(rx);
    receiver.told = receiver.settings.frequency;
    return;
  }
  receiver.history->gap();
  receiver.reading.clear();
  receiver.squelch = -1;
}

void ReceiverWatch::receiversChanged(const ReceiverMoves& moves) {
  ++generation_;
  std::array<std::shared_ptr<Receiver>, kMostReceivers> kept;
  for (Index rx = 0; rx < kMostReceivers; ++rx)
    kept[rx] = std::make_shared<Receiver>(std::move(receivers_[rx]));
  moves.carry(kept, std::shared_ptr<Receiver>());
  for (Index rx = 0; rx < kMostReceivers; ++rx)
    receivers_[rx] = kept[rx] ? std::move(*kept[rx]) : Receiver();
  moves_.receiversChanged(moves);
  const Count receivers = receiverCount(component_);
  for (Index rx = 0; rx < receivers; ++rx) link(rx);
}

}  // namespace kelvane
