#include "benchmarks/wine/timing_sondrel/timing_receivers.h"

#include <utility>

namespace kelvane::bench {

Answer<Count> TimingReceivers::OpenRxConfig(Text, Long) {
  for (Index rx = kMostReceivers; rx-- > 0;) SetRxConnect(rx, true);
  return Count{kMostReceivers};
}

Outcome TimingReceivers::SetRxConnect(Index rx, Flag connect) {
  connected_[at(rx)] = connect;
  answers_.push_back(
      [rx, connect](ReceiverListener& to) { to.RxConnState(rx, connect ? 1000 : 999); });
  wake_();
  return Outcome::Done;
}

Outcome TimingReceivers::SetRxFrequency(Index rx, Flag, Hz frequency) {
  board_.frequencySetAt = counter();
  ++board_.frequenciesSet;
  frequencies_[at(rx)] = frequency;
  answers_.push_back([rx, frequency](ReceiverListener& to) { to.RxFrqUpdated(rx, frequency, 0); });
  wake_();
  return Outcome::Done;
}

void TimingReceivers::deliver(ReceiverListener& to, Hz tuned, LONG meters) {
  for (const Answering& answer : std::exchange(answers_, {})) answer(to);
  if (tuned > 0) {
    frequencies_[0] = tuned;
    board_.raisedAt = counter();
    to.RxFrqUpdated(0, tuned, 1);
    ++board_.raised;
  }
  for (LONG i = 0; i < meters; ++i) meter(to);
}

void TimingReceivers::level(ReceiverListener& to, Long dBm) {
  board_.levelAt = counter();
  to.RxSMtUpdated(0, 0, 0, dBm, "S5");
  ++board_.levels;
}

void TimingReceivers::meter(ReceiverListener& to) {
  const LONG number = meters_++;
  const auto rx = static_cast<Index>(number % kMostReceivers);
  // Each differs from the one before: one that changed nothing would cost the panel nothing.
  const auto overS9 = static_cast<Long>(number / kMostReceivers % 60);
  to.RxSMtUpdated(rx, 400 + overS9 * 10, overS9, overS9 - 73, "S9+" + std::to_string(overS9));
  ++board_.meterEvents;
}

}  // namespace kelvane::bench
