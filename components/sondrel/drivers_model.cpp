#include "components/sondrel/drivers_model.h"

#include <algorithm>
#include <utility>

#include "base/text.h"
#include "components/sondrel/parameter_checks.h"
#include "components/sondrel/radios/radio_setup.h"
#include "contract/types.h"

namespace kelvane::sondrel {

namespace {

const std::string kGone = "There is no such receiver any more.";

bool isTaken(const std::vector<ReceiverEntry>& receivers, std::string_view name,
             const ReceiverEntry* except) {
  return std::ranges::any_of(receivers, [&](const ReceiverEntry& entry) {
    return &entry != except && equalIgnoringCase(entry.name, name);
  });
}

bool hasControlCharacter(std::string_view text) {
  return std::ranges::any_of(text, [](char c) { return static_cast<unsigned char>(c) < 32; });
}

const ReceiverKind& kindOrStandard(const ReceiverEntry& entry) {
  const ReceiverKind* kind = receiverKind(entry.kind);
  return kind ? *kind : receiverKinds().front();
}

std::string freeName(const std::vector<ReceiverEntry>& receivers) {
  std::string name;
  for (std::size_t number = receivers.size() + 1; name.empty() || isTaken(receivers, name, nullptr);
       ++number) {
    name = "Receiver " + std::to_string(number);
  }
  return name;
}

}  // namespace

DriversModel::DriversModel(ReceiverConfig config) : config_(std::move(config)) {
  for (const auto* list : {&config_.receivers, &config_.beyond}) {
    for (const ReceiverEntry& entry : *list) memories_.push_back(entry.memories);
  }
}

Result<> DriversModel::add(std::string_view kind) {
  if (!receiverKind(kind))
    return Failure{"There is no kind of receiver called " + std::string(kind) + "."};
  auto& receivers = config_.receivers;
  return add(ReceiverEntry{freeName(receivers), std::string(receiverKind(kind)->name), {}, {}});
}

Result<> DriversModel::add(ReceiverEntry entry) {
  auto& receivers = config_.receivers;
  if (receivers.size() >= kMostReceivers) return Failure{"There can be eight receivers at most."};
  const std::string name = entry.name;
  for (int number = 2; isTaken(receivers, entry.name, nullptr); ++number)
    entry.name = name + " (" + std::to_string(number) + ")";
  entry.memories = newMemoriesName(entry, memories_);
  memories_.push_back(entry.memories);
  receivers.push_back(std::move(entry));
  return {};
}

Result<> DriversModel::remove(std::size_t index) {
  if (index >= receivers().size()) return Failure{kGone};
  config_.receivers.erase(config_.receivers.begin() + static_cast<std::ptrdiff_t>(index));
  return {};
}

Result<> DriversModel::rename(std::size_t index, std::string_view name) {
  if (index >= receivers().size()) return Failure{kGone};
  name = trimmed(name);
  ReceiverEntry& entry = config_.receivers[index];
  constexpr std::size_t kLongest = 60;
  if (name.empty()) return Failure{"A receiver needs a name."};
  if (characterCount(name) > kLongest) return Failure{"The name is longer than 60 characters."};
  if (hasControlCharacter(name)) return Failure{"The name holds a character that cannot be shown."};
  if (isTaken(receivers(), name, &entry)) {
    return Failure{"Another receiver is called " + std::string(name) + " already."};
  }
  entry.name = name;
  return {};
}

Result<> DriversModel::move(std::size_t index, std::size_t to) {
  if (index >= receivers().size() || to >= receivers().size()) return Failure{kGone};
  const auto at = [this](std::size_t i) {
    return config_.receivers.begin() + static_cast<std::ptrdiff_t>(i);
  };
  if (index < to) std::rotate(at(index), at(index + 1), at(to + 1));
  if (index > to) std::rotate(at(to), at(index), at(index + 1));
  return {};
}

Result<> DriversModel::setKind(std::size_t index, std::string_view kind) {
  if (index >= receivers().size()) return Failure{kGone};
  if (!receiverKind(kind))
    return Failure{"There is no kind of receiver called " + std::string(kind) + "."};
  config_.receivers[index].kind = receiverKind(kind)->name;
  return {};
}

Result<> DriversModel::setParameter(std::size_t index, std::string_view key,
                                    std::string_view text) {
  if (index >= receivers().size()) return Failure{kGone};
  ReceiverEntry& entry = config_.receivers[index];
  text = trimmed(text);
  Result<> checked = checkParameter(kindOrStandard(entry), key, text);
  if (checked && hasControlCharacter(text))
    checked = Failure{"holds a character that cannot be shown"};
  if (!checked) return Failure{std::string(key) + " " + checked.reason() + "."};
  if (text.empty()) {
    std::erase_if(entry.settings, [key](const auto& s) { return equalIgnoringCase(s.first, key); });
  } else {
    entry.set(key, std::string(text));
  }
  return {};
}

std::string DriversModel::parameter(std::size_t index, std::string_view key) const {
  if (index >= receivers().size()) return {};
  const ReceiverEntry& entry = receivers()[index];
  if (const auto text = entry.setting(key); !text.empty()) return std::string(text);
  for (const Parameter& parameter : kindOrStandard(entry).parameters) {
    if (equalIgnoringCase(parameter.key, key)) return std::string(parameter.standard);
  }
  return {};
}

std::string whoHasDevice(const std::vector<ReceiverEntry>& receivers, std::string_view device) {
  if (trimmed(device).empty() || isNetworkDevice(device)) return {};
  const auto found = std::ranges::find_if(receivers, [&](const ReceiverEntry& entry) {
    return equalIgnoringCase(entry.kind, "radio") && sameDevice(entry.setting("Device"), device);
  });
  return found == receivers.end() ? std::string() : found->name;
}

std::string samePortWords(const std::vector<ReceiverEntry>& receivers, std::size_t index) {
  if (index >= receivers.size() || !equalIgnoringCase(receivers[index].kind, "radio")) return {};
  const std::string device(trimmed(receivers[index].setting("Device")));
  std::vector<ReceiverEntry> others = receivers;
  others.erase(others.begin() + static_cast<std::ptrdiff_t>(index));
  const std::string who = whoHasDevice(others, device);
  return who.empty() ? std::string() : device + " is the port of " + who + " already.";
}

const ReceiverKind& DriversModel::kindOf(std::size_t index) const {
  if (index >= receivers().size()) return receiverKinds().front();
  return kindOrStandard(receivers()[index]);
}

}  // namespace kelvane::sondrel
