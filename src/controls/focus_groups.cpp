#include "controls/focus_groups.h"

#include <algorithm>
#include <array>
#include <span>

#include "ui/control_ids.h"

namespace kelvane {

namespace {

constexpr std::array kTyping{id::FrqFocus + 0};
// The kHz digit comes first: it is the one that is tuned by hand most.
constexpr std::array kDigits{id::FrqDigit + 5, id::FrqDigit + 0, id::FrqDigit + 1,
                             id::FrqDigit + 2, id::FrqDigit + 3, id::FrqDigit + 4,
                             id::FrqDigit + 6, id::FrqDigit + 7, id::FrqDigit + 8};
constexpr std::array kReceiver{id::ModEvent + 0, id::ModEvent + 1, id::ModEvent + 2,
                               id::ModEvent + 3, id::ModEvent + 4};
constexpr std::array kPanel{
    id::GenEvent + 0,     id::GenEvent + 1, id::GenEvent + 2, id::Opener + 0, id::Opener + 1,
    id::Opener + 2,       id::Opener + 3,   id::Opener + 4,   id::Opener + 5, id::Opener + 6,
    id::ConfigButton + 0, id::Opener + 7,   id::Opener + 8};
constexpr std::array kTabs{id::TabStrip + 0};

constexpr std::array<std::span<const int>, 5> kGroups{kTyping, kDigits, kReceiver, kPanel, kTabs};
constexpr int kCount = static_cast<int>(kGroups.size());

int groupOf(int control) {
  for (int group = 0; group < kCount; ++group) {
    if (std::ranges::find(kGroups[group], control) != kGroups[group].end()) return group;
  }
  return 0;
}

}  // namespace

int FocusGroups::entryOf(int group) const {
  const auto found = std::ranges::find_if(
      kGroups[group], [this](int control) { return keyboard_.takesKeys(control); });
  return found == kGroups[group].end() ? -1 : *found;
}

void FocusGroups::nextGroup(int direction) {
  const int from = groupOf(focused_);
  for (int step = 1; step < kCount; ++step) {
    const int entry = entryOf((from + direction * step + kCount * step) % kCount);
    if (entry != -1) return keyboard_.focus(entry);
  }
}

bool FocusGroups::onButton() const {
  for (const std::span<const int> group : {std::span<const int>(kReceiver), {kPanel}}) {
    if (std::ranges::find(group, focused_) != group.end()) return true;
  }
  return false;
}

bool FocusGroups::nextButton(int direction) {
  if (!onButton()) return false;
  const std::span<const int> group = kGroups[groupOf(focused_)];
  const auto count = static_cast<int>(group.size());
  const auto from = static_cast<int>(std::ranges::find(group, focused_) - group.begin());
  for (int step = 1; step < count; ++step) {
    const int next = group[(from + direction * step + count * step) % count];
    if (keyboard_.takesKeys(next)) {
      keyboard_.focus(next);
      return true;
    }
  }
  return true;
}

}  // namespace kelvane
