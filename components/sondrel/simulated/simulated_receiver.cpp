#include "components/sondrel/simulated/simulated_receiver.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace kelvane::sondrel {

namespace {

constexpr milliseconds kMeasurePeriod{50};
/// A silent receiver is asked again by the link itself.
constexpr milliseconds kSilentRetry{1000};

}  // namespace

SimulatedReceiver::SimulatedReceiver(ReceiverHost& host, std::string name, Simulation simulation)
    : Receiver(host, std::move(name)),
      simulation_(std::move(simulation)),
      faults_(simulation_.faults) {
  setCapabilities(simulation_.can);
  const auto told = [this](Item item) { return !simulation_.untold.has(item); };
  const auto start = [this, told](Item item, std::int32_t value) {
    if (told(item)) changed(item, value, Cause::Learned);
  };
  start(Item::Frequency, simulation_.frequency);
  const Hz filter = told(Item::Filter) ? can().mode(simulation_.mode)->usual : 0;
  if (told(Item::Mode)) changedMode(simulation_.mode, filter, Cause::Learned);
  if (!can().agc.empty()) start(Item::Agc, can().agc.front().value);
  if (!can().blanker.empty()) start(Item::Blanker, can().blanker.front().value);
  if (!can().attenuator.empty()) start(Item::Attenuator, can().attenuator.front().value);
  if (can().hfFilter) start(Item::HfFilter, 1);
  start(Item::Step, simulation_.step);
}

Outcome SimulatedReceiver::setTime(const Text& time, Instant) {
  if (!online()) return Outcome::Failed;
  time_ = time;
  return Outcome::Done;
}

ChannelReading SimulatedReceiver::channelReading() const {
  constexpr Count kBeforeStall = 3;
  ChannelReading reading;
  reading.each = faults_.channelTime;
  reading.starts = faults_.reading != SimulatedFaults::Reading::NeverStarts;
  if (faults_.reading == SimulatedFaults::Reading::Stalls) reading.stallsAfter = kBeforeStall;
  return reading;
}

void SimulatedReceiver::openLink(Instant now) {
  line_.clear();
  measureDue_ = kNever;
  attemptEnds_ = now + faults_.linkTime;
}

void SimulatedReceiver::closeLink(Instant) {
  line_.clear();
  measureDue_ = attemptEnds_ = kNever;
}

void SimulatedReceiver::endAttempt(Instant now) {
  attemptEnds_ = kNever;
  const bool healed = faults_.healsAfter > 0 && failed_ >= faults_.healsAfter;
  if (healed) faults_.code = 0;
  if (faults_.code == 0) {
    failed_ = 0;
    measureDue_ = now;
    linkUp(simulation_.remote);
    return;
  }
  ++failed_;
  const auto state = static_cast<LinkState>(faults_.code);
  if (state == LinkState::NotResponding) attemptEnds_ = now + kSilentRetry;
  linkDown(state);
}

void SimulatedReceiver::setFaults(const SimulatedFaults& faults, Instant now) {
  const Long former = std::exchange(faults_, faults).code;
  if (faults.code == former) return;
  failed_ = 0;
  if (faults.code == 0) {
    if (linkCode() == former && attemptEnds_ == kNever) attemptEnds_ = now + faults_.linkTime;
  } else if (online()) {
    closeLink(now);
    endAttempt(now);
  }
}

void SimulatedReceiver::takeRemote(bool remote, Instant) {
  remoteIs(faults_.refusesRemote ? this->remote() : remote);
}

void SimulatedReceiver::carryOut(const Request& request, Instant now) {
  line_.add(request, faults_.answerTime, now);
  answerArrived(now);
}

void SimulatedReceiver::answer(const Request& request) {
  if (faults_.refuses(request.item)) {
    refused(request);
  } else {
    done(request, request.value);
  }
}

void SimulatedReceiver::answerArrived(Instant now) {
  while (const auto request = line_.arrived(faults_.answerTime, now)) answer(*request);
}

void SimulatedReceiver::tick(Instant now) {
  if (now >= attemptEnds_) endAttempt(now);
  answerArrived(now);
  if (now >= measureDue_) measure(now);
}

Instant SimulatedReceiver::nextDue() const {
  return std::min({attemptEnds_, measureDue_, line_.nextDue()});
}

/// What the antenna sees, also where the receiver does not tell it.
Passband SimulatedReceiver::heard() const {
  const auto is = [this](Item item, std::int32_t otherwise) {
    return newest(item) >= 0 ? newest(item) : otherwise;
  };
  return passband(is(Item::Frequency, simulation_.frequency), is(Item::Mode, simulation_.mode),
                  newest(Item::Filter));
}

void SimulatedReceiver::measure(Instant now) {
  // On the raster of twenty a second; after a pause one reading, not all that were missed.
  measureDue_ += kMeasurePeriod;
  if (measureDue_ <= now) measureDue_ = now + kMeasurePeriod;
  const auto is = [this](Item item) { return newest(item); };
  const Choice* attenuator = choiceOf(can().attenuator, is(Item::Attenuator));
  double level = levelIn(heard(), now) + simulation_.gain;
  constexpr double kCrackleRise = 14;
  if (crackles(now) && is(Item::Blanker) <= 0) level += kCrackleRise;
  // Without the preselector strong transmitters far away fill the receiver with their mixtures.
  constexpr double kMixtures = 4;
  if (can().hfFilter && is(Item::HfFilter) == 0) level += kMixtures;
  if (attenuator) level -= attenuator->aux;
  const Long dBm = static_cast<Long>(std::lround(level));
  if (!simulation_.untold.meter) levelIs(dBm);
  if (simulation_.untold.squelch) return;
  squelchLevelIs(simulation_.squelch);
  // Closes a little lower than it opens, else it would chatter on a signal at the threshold.
  constexpr Long kHysteresis = 3;
  const Long threshold = simulation_.squelch - (squelchOpen() ? kHysteresis : 0);
  squelchIs(dBm >= threshold);
}

bool SimulatedReceiver::turn(Item item, std::int32_t value) {
  if (!online()) return false;
  if (item == Item::Step) {
    changed(item, std::clamp(value, std::max(can().finest, 1), can().largestStep));
    return true;
  }
  const auto accepted = acceptable(item, value);
  if (!accepted) return false;
  if (item == Item::Mode) {
    changedMode(*accepted, usualFilter(*accepted));
  } else {
    changed(item, *accepted);
  }
  return true;
}

void SimulatedReceiver::turnLine(Long line, Long state) {
  if (online()) outIs(line, state != 0 ? 1 : 0);
}

}  // namespace kelvane::sondrel
