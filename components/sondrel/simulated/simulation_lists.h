#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "components/sondrel/simulated/simulation.h"

namespace kelvane::sondrel {

// The texts of a simulated receiver's keys. Each answers none where the text is not of its form;
// "none" stands for an empty list.

/// Whole numbers between commas or blanks, ascending and each once.
std::optional<std::vector<std::int32_t>> wholeList(std::string_view text, std::int32_t low,
                                                   std::int32_t high);
/// Names of contract/modes.h; at least one.
std::optional<std::vector<ModeChoice>> modeList(std::string_view text);
/// slow, medium, fast, off.
std::optional<std::vector<Choice>> agcList(std::string_view text);
/// Steps in dB; 0, off, is always one of them.
std::optional<std::vector<Choice>> attenuatorList(std::string_view text);
/// Off and this many levels; empty for no level.
std::vector<Choice> blankerLevels(int levels);

struct BfoRange {
  Hz minimum = 0;
  Hz maximum = 0;
};
/// "-5000 5000".
std::optional<BfoRange> bfoRange(std::string_view text);

struct ChannelRange {
  Channel first = 0;
  Count count = 0;  ///< last number plus one
};
/// "0-99" or "1-200".
std::optional<ChannelRange> channelRange(std::string_view text);
/// The words for a text that is no such range; empty for one that is.
Result<> checkChannels(std::string_view text);

struct RefusedList {
  std::vector<Item> items;
  bool remote = false;
};
/// Words of frequency, mode, filter, agc, blanker, attenuator, bfo, hffilter, remote.
std::optional<RefusedList> refusedList(std::string_view text);

/// Words of frequency, mode, filter, agc, blanker, attenuator, bfo, hffilter, meter, squelch.
std::optional<UntoldList> untoldList(std::string_view text);

/// normal, stalls, never.
std::optional<SimulatedFaults::Reading> channelReadingNamed(std::string_view text);

}  // namespace kelvane::sondrel
