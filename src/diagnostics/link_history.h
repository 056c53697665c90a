#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>
#include <string_view>

#include "base/wall_time.h"
#include "contract/types.h"

namespace kelvane {

/// One event that tells of a link or of the set of receivers.
struct LinkEvent {
  WallTime when = 0;
  const char* name = "";  ///< the event's name in the contract
  Long receiver = 0;      ///< for DrvUpdated: the number of receivers
  Long code = 0;
  std::uint32_t times = 1;  ///< how often it came, one after the other
  WallTime last = 0;        ///< the last of them, where there are several
};

/// The last events of all links, for whoever has to explain what happened. An event that repeats a
/// receiver's last one is only counted: a link that fails again and again must not push out what
/// came before. Never allocates, so that it can be read after a fault too.
class LinkHistory {
 public:
  static constexpr std::size_t kMost = 1000;

  void note(const LinkEvent& event);
  std::size_t size() const { return size_; }
  /// The oldest one is 0.
  const LinkEvent& at(std::size_t place) const {
    return events_[(next_ + kMost - size_ + place) % kMost];
  }

 private:
  LinkEvent* lastOf(Long receiver);

  std::array<LinkEvent, kMost> events_{};
  std::size_t next_ = 0, size_ = 0;
};

/// The event as a line without its end, e.g. "2026-03-01 17:20:05.250 UTC  receiver 2:
/// RxConnState 1003 Link: Timeout, 7 times until 2026-03-01 17:21:00.125 UTC". Answers what of the
/// buffer is the text. Allocates nothing.
std::string_view writeEvent(const LinkEvent& event, std::span<char> buffer);

/// Whether the event of this name tells of a link or of the set of receivers.
constexpr bool concernsLinks(std::string_view event) {
  return event == "RxConnState" || event == "RxDataError" || event == "RxRmtState" ||
         event == "DrvUpdated";
}

}  // namespace kelvane
