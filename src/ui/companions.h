#pragma once

#include <array>
#include <cstddef>
#include <functional>
#include <utility>

namespace kelvane {

/// A window of the program's own that a key or a button of the main window opens.
enum class Companion {
  Channels,      ///< the channel memories of the shown receiver
  Log,           ///< the station log as it is
  LogAndRecord,  ///< the station log, after the present setting was recorded in it
  Help,          ///< the card of keyboard commands
  Overview,      ///< a row for each receiver
  Traces,        ///< the receivers' levels over each other
  Stations,      ///< the operator's own list of stations
  TakeStation,   ///< the same, after the present setting was taken into it
  Count
};

/// The companion windows by what opens them. What is not there has no button, and its key does
/// nothing.
class Companions {
 public:
  void provide(Companion window, std::function<void()> open) { at(window) = std::move(open); }
  bool has(Companion window) const { return static_cast<bool>(openers_[place(window)]); }
  void open(Companion window) {
    if (has(window)) at(window)();
  }

 private:
  static std::size_t place(Companion window) { return static_cast<std::size_t>(window); }
  std::function<void()>& at(Companion window) { return openers_[place(window)]; }

  std::array<std::function<void()>, static_cast<std::size_t>(Companion::Count)> openers_;
};

}  // namespace kelvane
