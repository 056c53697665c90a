#include "components/ambrel/schedule/eibi_line.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cstring>
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

/// Eight digits as four numbers of two digits, all at a stroke; false where one is no digit.
bool fourNumbers(const char* first, const char* second, std::array<int, 4>& numbers) {
  static_assert(std::endian::native == std::endian::little);
  constexpr std::uint64_t kEach = 0x0101010101010101;
  std::uint32_t low = 0, high = 0;
  std::memcpy(&low, first, sizeof low);
  std::memcpy(&high, second, sizeof high);
  const std::uint64_t digits = (low | std::uint64_t{high} << 32) ^ (kEach * '0');
  // Above 9 the sum reaches the byte's highest bit, unless that was set before.
  if (((digits + kEach * (0x80 - 10)) | digits) & kEach * 0x80) return false;
  const std::uint64_t pairs = digits * 10 + (digits >> 8);
  for (std::size_t i = 0; i < 4; ++i) numbers[i] = static_cast<int>(pairs >> (16 * i) & 0xFF);
  return true;
}

bool has(std::string_view text, std::string_view part) {
  return text.find(part) != std::string_view::npos;
}

}  // namespace

bool readTimes(std::string_view text, Record& record) {
  if (text.size() != 9 || text[4] != '-') return false;
  std::array<int, 4> numbers;
  if (!fourNumbers(text.data(), text.data() + 5, numbers)) return false;
  const int from = numbers[0] * 60 + numbers[1], to = numbers[2] * 60 + numbers[3];
  if (numbers[1] >= 60 || numbers[3] >= 60 || from > kMinutesOfDay || to > kMinutesOfDay)
    return false;
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
