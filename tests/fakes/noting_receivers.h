#pragma once

#include <vector>

#include "contract/components.h"

namespace kelvane::fakes {

/// Hands every operation on to another component.
class PassingReceivers : public ReceiverComponent {
 public:
  explicit PassingReceivers(ReceiverComponent& inner) : inner_(inner) {}

#define ASK(name, Result, fallback, params, args) \
  Answer<Result> name params override { return inner_.name args; }
#define TELL(name, params, args) \
  Outcome name params override { return inner_.name args; }
#include "contract/sondrel_operations.inc"
#undef ASK
#undef TELL

 private:
  ReceiverComponent& inner_;
};

/// The same for the frequency component.
class PassingFrequencies : public FrequencyComponent {
 public:
  explicit PassingFrequencies(FrequencyComponent& inner) : inner_(inner) {}

#define ASK(name, Result, fallback, params, args) \
  Answer<Result> name params override { return inner_.name args; }
#define TELL(name, params, args) \
  Outcome name params override { return inner_.name args; }
#define WALK(name, params, args) \
  Answer<FrqRecord> name params override { return inner_.name args; }
#include "contract/ambrel_operations.inc"
#undef ASK
#undef TELL
#undef WALK

 private:
  FrequencyComponent& inner_;
};

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
