#include <algorithm>

#include "components/sondrel/sondrel_core.h"
#include "contract/modes.h"

namespace kelvane::sondrel {

namespace {

std::optional<std::int32_t> nextMode(const Receiver& r) {
  const auto& modes = r.can().modes;
  if (modes.empty()) return std::nullopt;
  const auto after = std::ranges::upper_bound(modes, r.newest(Item::Mode), {}, &ModeChoice::value);
  return after == modes.end() ? modes.front().value : after->value;
}

std::optional<std::int32_t> nextFilter(const Receiver& r) {
  const ModeChoice* mode = r.can().mode(r.newest(Item::Mode));
  if (!mode || mode->filters.empty()) return std::nullopt;
  const auto after = std::ranges::upper_bound(mode->filters, r.newest(Item::Filter));
  return after == mode->filters.end() ? mode->filters.front() : *after;
}

std::optional<std::int32_t> nextAgc(const Receiver& r) {
  return nextChoice(r.can().agc, r.newest(Item::Agc));
}
std::optional<std::int32_t> nextBlanker(const Receiver& r) {
  return nextChoice(r.can().blanker, r.newest(Item::Blanker));
}
std::optional<std::int32_t> nextAttenuator(const Receiver& r) {
  return nextChoice(r.can().attenuator, r.newest(Item::Attenuator));
}

Text nameOf(const std::vector<Choice>& choices, Setting value) {
  const Choice* choice = choiceOf(choices, value);
  return choice ? choice->name : Text();
}

/// With -1: whether there is any choice at all.
bool has(const std::vector<Choice>& choices, Setting value) {
  return value == -1 ? !choices.empty() : choiceOf(choices, value) != nullptr;
}

}  // namespace

Outcome SondrelCore::request(Index rx, Item item, std::int32_t value) {
  return tell(rx, [&](HostedReceiver& hosted, Instant now) {
    return hosted.receiver->request(item, value, Cause::Request, now);
  });
}

Outcome SondrelCore::requestNext(Index rx, Item item,
                                 std::optional<std::int32_t> (*next)(const Receiver&)) {
  return tell(rx, [&](HostedReceiver& hosted, Instant now) {
    const auto value = next(*hosted.receiver);
    if (!value) return Outcome::Failed;
    return hosted.receiver->request(item, *value, Cause::Request, now);
  });
}

// Modes.

Answer<Flag> SondrelCore::IsRxBfoMode(Index rx, Setting mode) {
  return ask(rx, false, [mode](const Receiver& r) {
    const ModeChoice* choice = r.can().mode(mode);
    return choice && choice->bfo;
  });
}
Answer<Text> SondrelCore::GetRxModeName(Index rx, Setting mode) {
  return ask(rx, Text(), [mode](const Receiver& r) {
    return r.can().mode(mode) ? Text(modeName(mode)) : Text();
  });
}
Answer<Setting> SondrelCore::GetRxModeValue(Index rx, Text name) {
  return ask(rx, Setting{-1}, [&](const Receiver& r) {
    const auto mode = modeNamed(name);
    const Setting value = mode ? static_cast<Setting>(*mode) : -1;
    return r.can().mode(value) ? value : -1;
  });
}
Answer<Flag> SondrelCore::GetRxModeFlag(Index rx, Setting mode) {
  return ask(rx, false, [mode](const Receiver& r) {
    const ModeChoice* choice = r.can().mode(mode);
    return choice && choice->carrier;
  });
}
Answer<Count> SondrelCore::GetRxModeCount(Index rx) {
  return ask(rx, Count{0}, [](const Receiver& r) {
    return r.can().modes.empty() ? 0 : r.can().modes.back().value + 1;
  });
}
Answer<Flag> SondrelCore::HasRxMode(Index rx, Setting mode) {
  return ask(rx, false, [mode](const Receiver& r) {
    return mode == -1 ? !r.can().modes.empty() : r.can().mode(mode) != nullptr;
  });
}
Answer<Setting> SondrelCore::GetRxMode(Index rx) {
  return ask(rx, Setting{-1}, [](const Receiver& r) { return r.newest(Item::Mode); });
}
Outcome SondrelCore::SetRxMode(Index rx, Setting mode) { return request(rx, Item::Mode, mode); }
Outcome SondrelCore::NextRxMode(Index rx) { return requestNext(rx, Item::Mode, nextMode); }

// Filters.

Answer<Count> SondrelCore::GetRxFilterCount(Index rx) {
  return ask(rx, Count{0}, [](const Receiver& r) {
    const ModeChoice* mode = r.can().mode(r.newest(Item::Mode));
    return mode ? static_cast<Count>(mode->filters.size()) : 0;
  });
}
Answer<Setting> SondrelCore::GetRxFilter(Index rx) {
  return ask(rx, Setting{0}, [](const Receiver& r) { return r.newest(Item::Filter); });
}
Outcome SondrelCore::SetRxFilter(Index rx, Setting filter) {
  return request(rx, Item::Filter, filter);
}
Outcome SondrelCore::NextRxFilter(Index rx) { return requestNext(rx, Item::Filter, nextFilter); }
Answer<Long> SondrelCore::GetRxHFFilter(Index rx) {
  return ask(rx, Long{-1}, [](const Receiver& r) { return r.newest(Item::HfFilter); });
}
Outcome SondrelCore::SetRxHFFilter(Index rx, Long state) {
  return request(rx, Item::HfFilter, state);
}

// AGC, noise blanker and attenuator.

Answer<Text> SondrelCore::GetRxAgcName(Index rx, Setting agc) {
  return ask(rx, Text(), [agc](const Receiver& r) { return nameOf(r.can().agc, agc); });
}
Answer<Setting> SondrelCore::GetRxAgcValue(Index rx, Text name) {
  return ask(rx, Setting{-1}, [&](const Receiver& r) { return choiceNamed(r.can().agc, name); });
}
Answer<Flag> SondrelCore::HasRxAgc(Index rx, Setting agc) {
  return ask(rx, false, [agc](const Receiver& r) { return has(r.can().agc, agc); });
}
Answer<Count> SondrelCore::GetRxAgcCount(Index rx) {
  return ask(rx, Count{0}, [](const Receiver& r) {
    return r.can().agc.empty() ? 0 : r.can().agc.back().value + 1;
  });
}
Answer<Setting> SondrelCore::GetRxAgc(Index rx) {
  return ask(rx, Setting{-1}, [](const Receiver& r) { return r.newest(Item::Agc); });
}
Outcome SondrelCore::SetRxAgc(Index rx, Setting agc) { return request(rx, Item::Agc, agc); }
Outcome SondrelCore::NextRxAgc(Index rx) { return requestNext(rx, Item::Agc, nextAgc); }
Answer<Long> SondrelCore::GetRxAgcAux(Index rx, Setting agc) {
  return ask(rx, Long{0}, [agc](const Receiver& r) { return auxOf(r.can().agc, agc); });
}

Answer<Text> SondrelCore::GetRxNBlName(Index rx, Setting blanker) {
  return ask(rx, Text(), [blanker](const Receiver& r) { return nameOf(r.can().blanker, blanker); });
}
Answer<Flag> SondrelCore::HasRxNBl(Index rx, Setting blanker) {
  return ask(rx, false, [blanker](const Receiver& r) { return has(r.can().blanker, blanker); });
}
Answer<Setting> SondrelCore::GetRxNBl(Index rx) {
  return ask(rx, Setting{-1}, [](const Receiver& r) { return r.newest(Item::Blanker); });
}
Outcome SondrelCore::NextRxNBl(Index rx) { return requestNext(rx, Item::Blanker, nextBlanker); }
Answer<Long> SondrelCore::GetRxNBlAux(Index rx, Setting blanker) {
  return ask(rx, Long{0}, [blanker](const Receiver& r) { return auxOf(r.can().blanker, blanker); });
}

Answer<Text> SondrelCore::GetRxAttName(Index rx, Setting attenuator) {
  return ask(rx, Text(),
             [attenuator](const Receiver& r) { return nameOf(r.can().attenuator, attenuator); });
}
Answer<Flag> SondrelCore::HasRxAtt(Index rx, Setting attenuator) {
  return ask(rx, false,
             [attenuator](const Receiver& r) { return has(r.can().attenuator, attenuator); });
}
Answer<Setting> SondrelCore::GetRxAtt(Index rx) {
  return ask(rx, Setting{-1}, [](const Receiver& r) { return r.newest(Item::Attenuator); });
}
Outcome SondrelCore::NextRxAtt(Index rx) {
  return requestNext(rx, Item::Attenuator, nextAttenuator);
}
Answer<Long> SondrelCore::GetRxAttDb(Index rx) {
  return ask(rx, Long{0}, [](const Receiver& r) {
    return auxOf(r.can().attenuator, r.newest(Item::Attenuator));
  });
}

}  // namespace kelvane::sondrel
