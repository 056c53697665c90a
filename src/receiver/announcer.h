#pragma once

#include <string>

#include "ui/control.h"

namespace kelvane {

/// What a screen reader says of the shown receiver without being asked (`Announced`): another
/// receiver, its link's fate, another frequency. A value is said once it has lasted from one look
/// to the next: nothing is said of what a turning knob passes, nor of a link's short attempts.
class Announcer {
 public:
  /// The shown receiver as it is now. `link` is empty while it answers, `frequency` while none is
  /// known.
  struct State {
    std::string receiver, link, frequency;

    bool operator==(const State&) const = default;
  };

  explicit Announcer(Control& Announced) : Announced_(Announced) {}

  /// At an even pace, about once a second.
  void look(const State& now);

 private:
  std::string newsOf(const State& now) const;

  Control& Announced_;
  State seen_, announced_;
};

/// A frequency as it is spoken: kHz, without zeros that say nothing; empty for a negative one.
std::string spokenFrequency(double hertz);

}  // namespace kelvane
