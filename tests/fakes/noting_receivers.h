#pragma once

#include <vector>

#include "contract/components.h"

namespace kelvane::fakes {

// Hand every operation on to another component.
#define ASK(name, Result, fallback, params, args) \
  Answer<Result> name params override { return inner_.name args; }
#define TELL(name, params, args) \
  Outcome name params override { return inner_.name args; }
#define WALK(name, params, args) \
  Answer<FrqRecord> name params override { return inner_.name args; }

class PassingReceivers : public ReceiverComponent {
 public:
  explicit PassingReceivers(ReceiverComponent& inner) : inner_(inner) {}
#include "contract/sondrel_operations.inc"

 private:
  ReceiverComponent& inner_;
};

class PassingFrequencies : public FrequencyComponent {
 public:
  explicit PassingFrequencies(FrequencyComponent& inner) : inner_(inner) {}
#include "contract/ambrel_operations.inc"

 private:
  FrequencyComponent& inner_;
};

#undef ASK
#undef TELL
#undef WALK

/// Notes the frequencies that were asked for, as they were asked for, and counts stored channels.
class NotingReceivers final : public PassingReceivers {
 public:
  struct Asked {
    Index rx;
    Hz frequency;
  };

  using PassingReceivers::PassingReceivers;

  Outcome SetRxFrequency(Index rx, Flag channelized, Hz frequency) override {
    asked.push_back({rx, frequency});
    return PassingReceivers::SetRxFrequency(rx, channelized, frequency);
  }

  Outcome StoreRxChannel(Index rx, Channel channel) override {
    ++stored;
    return PassingReceivers::StoreRxChannel(rx, channel);
  }

  std::vector<Asked> asked;
  int stored = 0;
};

}  // namespace kelvane::fakes
