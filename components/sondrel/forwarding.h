#pragma once

#include <memory>
#include <span>

#include "components/sondrel/receiver.h"

namespace kelvane::sondrel {

/// Repeats what changes at one receiver on the others: frequency, mode, filter, AGC, attenuator,
/// noise blanker, BFO and HF filter; what a program changed, once it counts. What was repeated is
/// never repeated again, so there is no echo. Each slave takes what it can (the nearest frequency
/// of its range, the nearest filter and attenuation); what it lacks it leaves, and the others do
/// not hear of that.
class Forwarding {
 public:
  /// -1 none, -2 from every receiver, 0 to 7 from that receiver.
  void setMode(Long mode) { mode_ = mode; }
  /// Hands a confirmed change on to the others.
  void pass(const Change& change, const Receiver& from, std::span<Receiver* const> receivers,
            Instant now) const;

 private:
  bool concerns(const Change& change, const Receiver& from) const;

  Long mode_ = kForwardNone;
};

}  // namespace kelvane::sondrel
