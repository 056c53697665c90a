#include "components/sondrel/receiver_entry.h"

#include <algorithm>

#include "base/text.h"

namespace kelvane::sondrel {

namespace {

template <class Settings>
auto* find(Settings& settings, std::string_view key) {
  const auto same = [key](const auto& setting) { return equalIgnoringCase(setting.first, key); };
  const auto found = std::ranges::find_if(settings, same);
  return found == settings.end() ? nullptr : &found->second;
}

}  // namespace

std::string_view ReceiverEntry::setting(std::string_view key) const {
  const std::string* text = find(settings, key);
  return text ? std::string_view(*text) : std::string_view();
}

void ReceiverEntry::set(std::string_view key, std::string value) {
  if (std::string* text = find(settings, key)) {
    *text = std::move(value);
  } else {
    settings.emplace_back(key, std::move(value));
  }
}

const ReceiverKind* receiverKind(std::string_view name) {
  const auto kinds = receiverKinds();
  const auto same = [name](const ReceiverKind& kind) { return equalIgnoringCase(kind.name, name); };
  const auto found = std::ranges::find_if(kinds, same);
  return found == kinds.end() ? nullptr : &*found;
}

}  // namespace kelvane::sondrel
