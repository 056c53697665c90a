#include "diagnostics/link_history.h"

#include <algorithm>
#include <chrono>
#include <cstdio>

#include "contract/link_state.h"

namespace kelvane {

namespace {

std::string_view wordsOf(const LinkEvent& event) {
  if (event.name != std::string_view("RxConnState")) return {};
  return event.code == static_cast<Long>(LinkState::Up) ? "up" : linkFaultWords(event.code);
}

/// Prints behind what the buffer holds already; what has no room is left out.
class LineWriter {
 public:
  explicit LineWriter(std::span<char> buffer) : buffer_(buffer) {}

  template <class... Values>
  void print(const char* form, Values... values) {
    const auto rest = buffer_.subspan(length_);
    const int wanted = std::snprintf(rest.data(), rest.size(), form, values...);
    length_ = std::min(length_ + static_cast<std::size_t>(std::max(wanted, 0)), buffer_.size() - 1);
  }
  void time(WallTime when);
  std::string_view text() const { return {buffer_.data(), length_}; }

 private:
  std::span<char> buffer_;
  std::size_t length_ = 0;
};

void LineWriter::time(WallTime moment) {
  using namespace std::chrono;
  const sys_time<milliseconds> when{milliseconds(moment)};
  const auto day = floor<days>(when);
  const year_month_day date(day);
  const hh_mm_ss time(when - day);
  print("%04d-%02u-%02u %02d:%02d:%02d.%03d UTC", static_cast<int>(date.year()),
        static_cast<unsigned>(date.month()), static_cast<unsigned>(date.day()),
        static_cast<int>(time.hours().count()), static_cast<int>(time.minutes().count()),
        static_cast<int>(time.seconds().count()), static_cast<int>(time.subseconds().count()));
}

/// Of all these events one alone concerns no receiver.
bool concernsAll(const LinkEvent& event) { return event.name == std::string_view("DrvUpdated"); }

}  // namespace

void LinkHistory::note(const LinkEvent& event) {
  LinkEvent* const same = concernsAll(event) ? nullptr : lastOf(event.receiver);
  if (same && same->code == event.code && same->name == std::string_view(event.name)) {
    ++same->times;
    same->last = event.when;
    return;
  }
  events_[next_] = event;
  next_ = (next_ + 1) % kMost;
  size_ = std::min(size_ + 1, kMost);
}

/// The receiver's last event; null where the set of receivers changed since, or it is long ago.
LinkEvent* LinkHistory::lastOf(Long receiver) {
  constexpr std::size_t kLookBack = 64;
  for (std::size_t back = 1; back <= std::min(size_, kLookBack); ++back) {
    LinkEvent& event = events_[(next_ + kMost - back) % kMost];
    if (concernsAll(event)) return nullptr;
    if (event.receiver == receiver) return &event;
  }
  return nullptr;
}

std::string_view writeEvent(const LinkEvent& event, std::span<char> buffer) {
  LineWriter line(buffer);
  line.time(event.when);
  if (concernsAll(event)) {
    line.print("  %s: %ld receivers", event.name, static_cast<long>(event.receiver));
    return line.text();
  }
  const std::string_view words = wordsOf(event);
  line.print("  receiver %ld: %s %ld %.*s", static_cast<long>(event.receiver) + 1, event.name,
             static_cast<long>(event.code), static_cast<int>(words.size()), words.data());
  if (event.times > 1) {
    line.print(", %lu times until ", static_cast<unsigned long>(event.times));
    line.time(event.last);
  }
  return line.text();
}

}  // namespace kelvane
