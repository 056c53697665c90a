#pragma once

#include <string>

#include "components/sondrel/receiver.h"
#include "components/sondrel/rigctld/request_line.h"
#include "components/sondrel/simulated/hf_spectrum.h"
#include "components/sondrel/simulated/simulation.h"

namespace kelvane::sondrel {

/// A receiver that is only played: it obeys the contract in full, hears a band of its own, and can
/// be given every fault that a real link shows.
class SimulatedReceiver : public Receiver {
 public:
  SimulatedReceiver(ReceiverHost& host, std::string name, Simulation simulation);

  SimulatedReceiver* simulated() override { return this; }
  Outcome setTime(const Text& time, Instant now) override;
  ChannelReading channelReading() const override;
  void tick(Instant now) override;
  Instant nextDue() const override;

  // What is done at the receiver itself, from its settings dialog.

  /// Turns the knob: the item takes the value that is nearest to this one. False where the
  /// receiver has no such value, or is switched off.
  bool turn(Item item, std::int32_t value);
  /// Switches a line from outside.
  void turnLine(Long line, Long state);
  /// Faults from now on. A new code ends a link that is up; without a code one that was down for
  /// the old one is tried again at once.
  void setFaults(const SimulatedFaults& faults, Instant now);
  const SimulatedFaults& faults() const { return faults_; }
  /// The text of the last SetRxTime.
  const Text& time() const { return time_; }

 protected:
  void openLink(Instant now) override;
  void closeLink(Instant now) override;
  void carryOut(const Request& request, Instant now) override;
  void takeRemote(bool remote, Instant now) override;

 private:
  void endAttempt(Instant now);
  void answer(const Request& request);
  void answerArrived(Instant now);
  Passband heard() const;
  void measure(Instant now);

  Simulation simulation_;
  SimulatedFaults faults_;
  RequestLine line_;
  Instant attemptEnds_ = kNever;
  Instant measureDue_ = kNever;
  int failed_ = 0;  ///< attempts since the fault came
  Text time_;
};

}  // namespace kelvane::sondrel
