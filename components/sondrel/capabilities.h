#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "contract/types.h"

namespace kelvane::sondrel {

/// One value of an AGC, noise blanker or attenuator.
struct Choice {
  Setting value = 0;
  std::string name;
  Long aux = 0;  ///< AGC: decay time, ms; blanker: threshold, percent; attenuator: dB

  bool operator==(const Choice&) const = default;
};

/// One mode that a receiver has.
struct ModeChoice {
  Setting value = 0;        ///< a number of contract/modes.h
  bool carrier = false;     ///< recovers a carrier
  bool bfo = false;         ///< uses the BFO
  std::vector<Hz> filters;  ///< bandwidths, ascending, never 0
  Hz usual = 0;  ///< the filter when the mode is taken for the first time; 0 where there are none

  bool operator==(const ModeChoice&) const = default;
};

/// What a receiver can do. Lists are in ascending order of their values.
struct Capabilities {
  std::string type;  ///< shown beside the name; empty when there is nothing to add
  Hz minimum = 0;
  Hz maximum = 29'999'999;
  Hz finest = 1;  ///< finest tuning step; 0 where it is not known
  Hz largestStep = 30'000;
  Hz bfoMinimum = 0;  ///< both limits 0: no BFO
  Hz bfoMaximum = 0;
  std::vector<ModeChoice> modes;
  std::vector<Choice> agc;
  std::vector<Choice> blanker;
  std::vector<Choice> attenuator;
  bool hfFilter = false;
  Count lines = 0;           ///< auxiliary IO lines; negative where they can only be read
  Channel firstChannel = 0;  ///< 0 or 1
  Count channelCount = 0;    ///< last channel number plus one; 0 where there are no channels
  bool channelSkip = false;

  bool operator==(const Capabilities&) const = default;

  bool hasBfo() const { return bfoMinimum != 0 || bfoMaximum != 0; }
  bool hasChannel(Channel channel) const {
    return channel >= firstChannel && channel < channelCount;
  }
  const ModeChoice* mode(Setting value) const;
  /// The frequency within the limits and on the raster of the finest step that is nearest.
  Hz nearestFrequency(Hz frequency) const;
  Hz nearestBfo(Hz offset) const;
  /// The mode's filter nearest to a bandwidth, the narrower of two equally near ones; 0 where the
  /// mode has none.
  Hz nearestFilter(Setting mode, Hz bandwidth) const;
};

/// The choice of that value; null where there is none.
const Choice* choiceOf(const std::vector<Choice>& choices, Setting value);
/// The choice's further figure (dB, a level); 0 where there is no such choice.
Long auxOf(const std::vector<Choice>& choices, Setting value);
/// The value of that name, in capital or small letters; -1 where there is none.
Setting choiceNamed(const std::vector<Choice>& choices, std::string_view name);
/// The value that follows, the first one after the last; none where there is no choice.
std::optional<Setting> nextChoice(const std::vector<Choice>& choices, Setting value);

}  // namespace kelvane::sondrel
