#include "components/ambrel/eibi_line.h"

#include <algorithm>
#include <array>
#include <utility>

namespace kelvane::ambrel {

namespace {

/// Where broadcasters are heard, in any region and a little outside their bands too, Hz.
constexpr std::array<std::pair<Hz, Hz>, 17> kBroadcast = {{{148'500, 283'500},
                                                           {520'000, 1'710'000},
                                                           {2'300'000, 2'495'000},
                                                           {3'200'000, 3'400'000},
                                                           {3'900'000, 4'000'000},
                                                           {4'750'000, 5'060'000},
                                                           {5'800'000, 6'200'000},
                                                           {7'200'000, 7'600'000},
                                                           {9'250'000, 9'995'000},
                                                           {11'500'000, 12'160'000},
                                                           {13'500'000, 13'900'000},
                                                           {15'010'000, 15'900'000},
                                                           {17'450'000, 17'910'000},
                                                           {18'900'000, 19'020'000},
                                                           {21'450'000, 21'860'000},
                                                           {25'600'000, 26'110'000},
                                                           {26'900'000, 27'000'000}}};

bool inBroadcastBand(Hz frequency) {
  return std::any_of(kBroadcast.begin(), kBroadcast.end(), [frequency](const auto& band) {
    return frequency >= band.first && frequency < band.second;
  });
}

/// Minutes of "HHMM", 1440 for 2400; -1 where it is no time of the day.
int minutesOf(const char* text) {
  const auto digit = [text](int place) { return static_cast<unsigned>(text[place] - '0'); };
  const unsigned hour = digit(0) * 10 + digit(1), minute = digit(2) * 10 + digit(3);
  const bool digits = (digit(0) <= 9) & (digit(1) <= 9) & (digit(2) <= 9) & (digit(3) <= 9);
  const unsigned minutes = hour * 60 + minute;
  return digits & (minute < 60) & (minutes <= kMinutesOfDay) ? static_cast<int>(minutes) : -1;
}

bool has(std::string_view text, std::string_view part) {
  return text.find(part) != std::string_view::npos;
}

}  // namespace

bool readTimes(std::string_view text, Record& record) {
  if (text.size() != 9 || text[4] != '-') return false;
  const int from = minutesOf(text.data()), to = minutesOf(text.data() + 5);
  if (from < 0 || to < 0) return false;
  // Chosen and not branched: nothing foretells which broadcasts run past midnight.
  const int start = from == kMinutesOfDay ? 0 : from;
  const int whole = start == 0 ? kMinutesOfDay : 1;
  const int length = to - from + (to < from ? kMinutesOfDay : 0);
  record.start = static_cast<std::uint16_t>(start) & 0x7FF;
  record.minutes = static_cast<std::uint16_t>(length == 0 ? whole : length);
  return true;
}

std::optional<Mode> modeByWords(std::string_view language, std::string_view station, Hz frequency) {
  if (language.starts_with('-')) {
    if (language == "-CW") return Mode::Cw;
    if (language == "-TY") return Mode::Rtty;
    if (language == "-HF") return Mode::Usb;
    if (language == "-FX") return Mode::Fax;
    if (language == "-TS") return std::nullopt;
  }
  if (has(station, "DRM")) return Mode::Drm;
  if (has(station, "Volmet") || has(station, "VOLMET")) return Mode::Usb;
  if (has(station, " Fax")) return Mode::Fax;
  if (inBroadcastBand(frequency)) return Mode::Am;
  return std::nullopt;
}

}  // namespace kelvane::ambrel
