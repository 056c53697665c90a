#pragma once

#include <array>
#include <functional>
#include <vector>

#include "benchmarks/wine/timing_board.h"
#include "tests/fakes/bare_receivers.h"

namespace kelvane::bench {

/// Eight receivers that do nothing but note on the board when they were told a frequency, and raise
/// the events that the board asks for. Each operation's own event follows from deliver().
class TimingReceivers final : public fakes::BareReceivers {
 public:
  /// `wake` is called when deliver() should be, soon.
  TimingReceivers(TimingBoard& board, std::function<void()> wake)
      : board_(board), wake_(std::move(wake)) {}

  /// Raises what is due: answers, receiver 0 being tuned by its own knob (Hz, 0 for not), and this
  /// many meter events.
  void deliver(ReceiverListener& to, Hz tuned, LONG meters);

  /// Raises one level of receiver 0, dBm.
  void level(ReceiverListener& to, Long dBm);

  /// Opens all links; the first receiver reports last, and is the one that the panel then shows.
  Answer<Count> OpenRxConfig(Text, Long) override;
  Answer<Count> GetRxCount() override { return Count{kMostReceivers}; }
  Answer<Text> GetRxName(Index rx) override { return "Timing " + std::to_string(rx + 1); }
  Answer<Hz> GetRxFrqMax(Index) override { return Hz{29'999'999}; }
  Answer<Hz> GetRxMaxStep(Index) override { return Hz{1'000'000}; }
  Answer<Hz> GetRxMinStep(Index) override { return Hz{1}; }
  Answer<Flag> IsRxOnline(Index rx) override { return connected_[at(rx)]; }
  Answer<Flag> GetRxRemote(Index) override { return true; }
  Answer<Long> GetRxLinkState(Index rx) override { return connected_[at(rx)] ? 1000 : 999; }
  Answer<Hz> GetRxFrequency(Index rx, Long selector) override {
    return selector == kTuned ? frequencies_[at(rx)] : Hz{-1};
  }
  Outcome SetRxConnect(Index rx, Flag connect) override;
  Outcome SetRxFrequency(Index rx, Flag channelized, Hz frequency) override;

 private:
  using Answering = std::function<void(ReceiverListener&)>;

  static std::size_t at(Index rx) { return static_cast<std::size_t>(rx) % kMostReceivers; }
  void meter(ReceiverListener& to);

  TimingBoard& board_;
  std::function<void()> wake_;
  std::array<bool, kMostReceivers> connected_{};
  std::array<Hz, kMostReceivers> frequencies_ = {7'050'000, 7'051'000, 7'052'000, 7'053'000,
                                                 7'054'000, 7'055'000, 7'056'000, 7'057'000};
  std::vector<Answering> answers_;
  LONG meters_ = 0;
};

}  // namespace kelvane::bench
