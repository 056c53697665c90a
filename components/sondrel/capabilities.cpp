#include "components/sondrel/capabilities.h"

#include <algorithm>
#include <cstdlib>

#include "base/text.h"

namespace kelvane::sondrel {

const ModeChoice* Capabilities::mode(Setting value) const {
  const auto found = std::ranges::find(modes, value, &ModeChoice::value);
  return found == modes.end() ? nullptr : &*found;
}

Hz Capabilities::nearestFrequency(Hz frequency) const {
  const std::int64_t low = minimum;
  const std::int64_t high = std::max(minimum, maximum);
  const std::int64_t within = std::clamp<std::int64_t>(frequency, low, high);
  if (finest <= 1) return static_cast<Hz>(within);
  std::int64_t rounded = (within + finest / 2) / finest * finest;
  if (rounded > high) rounded -= finest;
  if (rounded < low) rounded += finest;
  return static_cast<Hz>(rounded > high ? within : rounded);
}

Hz Capabilities::nearestBfo(Hz offset) const {
  return std::clamp(offset, bfoMinimum, std::max(bfoMinimum, bfoMaximum));
}

Hz Capabilities::nearestFilter(Setting mode, Hz bandwidth) const {
  const ModeChoice* choice = this->mode(mode);
  if (!choice || choice->filters.empty()) return 0;
  const auto distance = [bandwidth](Hz filter) {
    return std::llabs(static_cast<long long>(filter) - bandwidth);
  };
  return *std::ranges::min_element(choice->filters, {}, distance);
}

const Choice* choiceOf(const std::vector<Choice>& choices, Setting value) {
  const auto found = std::ranges::find(choices, value, &Choice::value);
  return found == choices.end() ? nullptr : &*found;
}

Long auxOf(const std::vector<Choice>& choices, Setting value) {
  const Choice* choice = choiceOf(choices, value);
  return choice ? choice->aux : 0;
}

Setting choiceNamed(const std::vector<Choice>& choices, std::string_view name) {
  const auto same = [name](const Choice& choice) { return equalIgnoringCase(choice.name, name); };
  const auto found = std::ranges::find_if(choices, same);
  return found == choices.end() ? -1 : found->value;
}

std::optional<Setting> nextChoice(const std::vector<Choice>& choices, Setting value) {
  if (choices.empty()) return std::nullopt;
  const auto after = std::ranges::upper_bound(choices, value, {}, &Choice::value);
  return after == choices.end() ? choices.front().value : after->value;
}

}  // namespace kelvane::sondrel
