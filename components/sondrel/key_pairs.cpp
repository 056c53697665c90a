#include "components/sondrel/key_pairs.h"

#include <algorithm>
#include <array>
#include <cmath>

#include "base/text.h"
#include "contract/modes.h"

namespace kelvane::sondrel {

namespace {

struct Pair {
  std::string_view keys;
  Item item;
  int value;  ///< for Filter: the place in the mode's filters, in quarters from narrow to wide
};

constexpr int as(Mode mode) { return static_cast<int>(mode); }

constexpr std::array kPairs{
    Pair{"MA", Item::Mode, as(Mode::Am)},
    Pair{"MF", Item::Mode, as(Mode::Fm)},
    Pair{"MU", Item::Mode, as(Mode::Usb)},
    Pair{"ML", Item::Mode, as(Mode::Lsb)},
    Pair{"MC", Item::Mode, as(Mode::Cw)},
    Pair{"MR", Item::Mode, as(Mode::Rtty)},
    Pair{"MX", Item::Mode, as(Mode::Fax)},
    Pair{"FN", Item::Filter, 0},
    Pair{"FI", Item::Filter, 1},
    Pair{"FM", Item::Filter, 2},
    Pair{"FW", Item::Filter, 3},
    Pair{"FR", Item::Filter, 4},
    Pair{"AS", Item::Agc, 0},
    Pair{"AM", Item::Agc, 1},
    Pair{"AF", Item::Agc, 2},
    Pair{"P0", Item::HfFilter, 0},
    Pair{"P1", Item::HfFilter, 1},
};

/// Names of the AGC pairs' values, by which receivers that number them otherwise are served.
constexpr std::array<std::string_view, 3> kAgcNames{"Slow", "Medium", "Fast"};

Hz filterAt(const Receiver& receiver, int quarters) {
  const ModeChoice* mode = receiver.can().mode(receiver.newest(Item::Mode));
  if (!mode || mode->filters.empty()) return 0;
  const auto place = std::lround((static_cast<double>(mode->filters.size()) - 1) * quarters / 4);
  return mode->filters[static_cast<std::size_t>(place)];
}

void apply(const Pair& pair, Receiver& receiver, Instant now) {
  int value = pair.value;
  if (pair.item == Item::Filter) value = filterAt(receiver, value);
  if (pair.item == Item::Agc) {
    value = choiceNamed(receiver.can().agc, kAgcNames[static_cast<std::size_t>(value)]);
  }
  receiver.request(pair.item, value, Cause::Request, now);
}

bool opensPair(char key) { return std::string_view("MFAP").find(key) != std::string_view::npos; }

bool isOfNumber(char key) {
  return std::string_view("0123456789.,:").find(key) != std::string_view::npos;
}

}  // namespace

bool KeyPairs::press(std::string_view key, Receiver& receiver, Instant now) {
  const char c = key.size() == 1 ? upper(key).front() : '\0';
  const std::array<char, 2> typed{first_, c};
  const auto pair = std::ranges::find(kPairs, std::string_view(typed.data(), 2), &Pair::keys);
  if (first_ != 0 && pair != kPairs.end()) {
    first_ = 0;
    number_ = false;
    apply(*pair, receiver, now);
    return true;
  }
  // An F behind a number ends the entry of a filter and waits for nothing.
  const bool endsNumber = c == 'F' && number_;
  first_ = c != 0 && opensPair(c) && !endsNumber ? c : 0;
  number_ = c != 0 && isOfNumber(c);
  return false;
}

}  // namespace kelvane::sondrel
