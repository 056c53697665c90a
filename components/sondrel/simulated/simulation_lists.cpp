#include "components/sondrel/simulated/simulation_lists.h"

#include <algorithm>
#include <array>

#include "base/number.h"
#include "base/text.h"
#include "components/sondrel/standard_modes.h"
#include "contract/modes.h"

namespace kelvane::sondrel {

namespace {

/// What can be set, in the order of Item.
constexpr std::array<std::string_view, 8> kItemNames{
    "frequency", "mode", "filter", "agc", "blanker", "attenuator", "bfo", "hffilter"};

/// The words between commas and blanks; empty for "none".
std::vector<std::string_view> listWords(std::string_view text) {
  std::vector<std::string_view> result;
  while (!text.empty()) {
    const auto end = std::min(text.find_first_of(", \t"), text.size());
    if (end > 0) result.push_back(text.substr(0, end));
    text.remove_prefix(std::min(end + 1, text.size()));
  }
  if (result.size() == 1 && equalIgnoringCase(result.front(), "none")) result.clear();
  return result;
}

/// Place of a word in a row of names.
template <std::size_t N>
std::optional<std::size_t> placeOf(std::string_view word,
                                   const std::array<std::string_view, N>& names) {
  const auto same = [word](std::string_view name) { return equalIgnoringCase(name, word); };
  const auto found = std::ranges::find_if(names, same);
  if (found == names.end()) return std::nullopt;
  return static_cast<std::size_t>(found - names.begin());
}

/// In ascending order of their values, each value once.
template <class T>
void sortByValue(std::vector<T>& choices) {
  std::ranges::stable_sort(choices, {}, &T::value);
  const auto twice = std::ranges::unique(choices, {}, &T::value);
  choices.erase(twice.begin(), twice.end());
}

}  // namespace

std::optional<std::vector<std::int32_t>> wholeList(std::string_view text, std::int32_t low,
                                                   std::int32_t high) {
  std::vector<std::int32_t> numbers;
  for (const std::string_view word : listWords(text)) {
    const auto number = wholeNumber(word);
    if (!number || *number < low || *number > high) return std::nullopt;
    numbers.push_back(static_cast<std::int32_t>(*number));
  }
  std::ranges::sort(numbers);
  const auto twice = std::ranges::unique(numbers);
  numbers.erase(twice.begin(), twice.end());
  return numbers;
}

std::optional<std::vector<ModeChoice>> modeList(std::string_view text) {
  std::vector<ModeChoice> modes;
  for (const std::string_view word : listWords(text)) {
    const auto mode = modeNamed(word);
    if (!mode) return std::nullopt;
    modes.push_back(standardMode(static_cast<Setting>(*mode)));
  }
  sortByValue(modes);
  return modes.empty() ? std::nullopt : std::optional(modes);
}

std::optional<std::vector<Choice>> agcList(std::string_view text) {
  constexpr std::array<std::string_view, 4> names{"Slow", "Medium", "Fast", "Off"};
  constexpr std::array<Long, 4> decay{2000, 500, 100, 0};
  std::vector<Choice> choices;
  for (const std::string_view word : listWords(text)) {
    const auto place = placeOf(word, names);
    if (!place) return std::nullopt;
    choices.push_back({static_cast<Setting>(*place), std::string(names[*place]), decay[*place]});
  }
  sortByValue(choices);
  return choices;
}

std::optional<std::vector<Choice>> attenuatorList(std::string_view text) {
  const auto steps = wholeList(text, 0, 120);
  if (!steps) return std::nullopt;
  std::vector<Choice> choices;
  if (!steps->empty()) choices.push_back({0, "Off", 0});
  for (const std::int32_t db : *steps) {
    if (db == 0) continue;
    choices.push_back({static_cast<Setting>(choices.size()), std::to_string(db) + " dB", db});
  }
  return choices;
}

std::vector<Choice> blankerLevels(int levels) {
  if (levels <= 0) return {};
  std::vector<Choice> choices{{0, "Off", 0}};
  for (int level = 1; level <= levels; ++level) {
    choices.push_back({level, "NB " + std::to_string(level), 100 * level / (levels + 1)});
  }
  return choices;
}

std::optional<BfoRange> bfoRange(std::string_view text) {
  const auto limits = wholeList(text, -100'000, 100'000);
  if (!limits || limits->size() > 2) return std::nullopt;
  if (limits->empty()) return BfoRange{};
  return BfoRange{limits->front(), limits->back()};
}

std::optional<ChannelRange> channelRange(std::string_view text) {
  if (equalIgnoringCase(text, "none")) return ChannelRange{};
  const auto ends = split(text, '-');
  if (ends.size() != 2) return std::nullopt;
  const auto first = wholeNumber(ends[0]);
  const auto last = wholeNumber(ends[1]);
  if (!first || !last || *first < 0 || *first > 1 || *last < *first || *last > 9999) return {};
  return ChannelRange{static_cast<Channel>(*first), static_cast<Count>(*last + 1)};
}

Result<> checkChannels(std::string_view text) {
  constexpr auto kForm =
      "must be a first number of 0 or 1, \"-\" and a last one up to 9999, or none";
  if (channelRange(text)) return {};
  return Failure{kForm};
}

std::optional<UntoldList> untoldList(std::string_view text) {
  UntoldList untold;
  for (const std::string_view word : listWords(text)) {
    const auto place = placeOf(word, kItemNames);
    const bool meter = equalIgnoringCase(word, "meter");
    const bool squelch = equalIgnoringCase(word, "squelch");
    if (!place && !meter && !squelch) return std::nullopt;
    untold.meter = untold.meter || meter;
    untold.squelch = untold.squelch || squelch;
    if (place) untold.items.push_back(static_cast<Item>(*place));
  }
  return untold;
}

std::optional<RefusedList> refusedList(std::string_view text) {
  RefusedList refused;
  for (const std::string_view word : listWords(text)) {
    const auto place = placeOf(word, kItemNames);
    const bool remote = equalIgnoringCase(word, "remote");
    if (!place && !remote) return std::nullopt;
    refused.remote = refused.remote || remote;
    if (place) refused.items.push_back(static_cast<Item>(*place));
  }
  return refused;
}

std::optional<SimulatedFaults::Reading> channelReadingNamed(std::string_view text) {
  constexpr std::array<std::string_view, 3> names{"normal", "stalls", "never"};
  const auto place = placeOf(text, names);
  if (!place) return std::nullopt;
  return static_cast<SimulatedFaults::Reading>(*place);
}

}  // namespace kelvane::sondrel
