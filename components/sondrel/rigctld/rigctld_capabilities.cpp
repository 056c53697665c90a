#include "components/sondrel/rigctld/rigctld_capabilities.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <cmath>
#include <limits>

#include "base/text.h"

namespace kelvane::sondrel {

namespace {

constexpr double kMostHertz = std::numeric_limits<std::int32_t>::max();

struct ModeName {
  std::string_view name;
  int bit;
};

constexpr ModeName kModeBits[] = {
    {"AM", 0},    {"CW", 1},      {"USB", 2},      {"LSB", 3},      {"RTTY", 4},    {"FM", 5},
    {"WFM", 6},   {"CWR", 7},     {"RTTYR", 8},    {"AMS", 9},      {"PKTLSB", 10}, {"PKTUSB", 11},
    {"FM-D", 12}, {"PKTFM", 12},  {"ECSSUSB", 13}, {"ECSSLSB", 14}, {"FAX", 15},    {"SAM", 16},
    {"SAL", 17},  {"SAH", 18},    {"DSB", 19},     {"FMN", 21},     {"AM-D", 22},   {"PKTAM", 22},
    {"P25", 23},  {"D-STAR", 24}, {"DPMR", 25},    {"NXDN-VN", 26}, {"NXDN-N", 27}, {"DCR", 28},
};

// Widths to offer where the server tells none, by kind of mode.
struct UsualWidths {
  std::string_view mode;  // in the mode's name
  std::array<std::int32_t, 4> widths;
};
constexpr UsualWidths kUsualWidths[] = {
    {"WFM", {120000, 160000, 200000, 230000}},
    {"FM", {8000, 10000, 12500, 15000}},
    {"CW", {250, 500, 1000, 2400}},
    {"RTTY", {250, 500, 1000, 2400}},
    {"SB", {1800, 2400, 2700, 3000}},
    {"", {3000, 4500, 6000, 9000}},
};

std::vector<std::int32_t> usualWidths(std::string_view mode) {
  for (const auto& row : kUsualWidths) {
    if (mode.find(row.mode) != std::string_view::npos) {
      return {row.widths.begin(), row.widths.end()};
    }
  }
  return {};
}

}  // namespace

std::string_view dialectName(Dialect dialect) {
  switch (dialect) {
    case Dialect::Extended:
      return "rigctld, with labelled replies";
    case Dialect::Static:
      return "plain, with a fixed description";
    case Dialect::Minimal:
      return "plain, frequency and mode only";
  }
  return {};
}

std::int32_t RigctldCapabilities::nearestFrequency(std::int32_t hertz) const {
  double nearest = hertz;
  double distance = std::numeric_limits<double>::infinity();
  for (const auto& range : ranges) {
    const double inside = std::clamp<double>(hertz, std::ceil(range.low), std::floor(range.high));
    if (std::abs(inside - hertz) >= distance) continue;
    distance = std::abs(inside - hertz);
    nearest = inside;
  }
  return static_cast<std::int32_t>(std::clamp(nearest, 0.0, kMostHertz));
}

std::int32_t RigctldCapabilities::lowestFrequency() const {
  double low = ranges.empty() ? 0 : kMostHertz;
  for (const auto& range : ranges) low = std::min(low, std::ceil(range.low));
  return static_cast<std::int32_t>(std::clamp(low, 0.0, kMostHertz));
}

std::int32_t RigctldCapabilities::highestFrequency() const {
  double high = ranges.empty() ? kMostHertz : 0;
  for (const auto& range : ranges) high = std::max(high, std::floor(range.high));
  return static_cast<std::int32_t>(std::clamp(high, 0.0, kMostHertz));
}

std::vector<std::int32_t> RigctldCapabilities::widths(std::string_view mode) const {
  std::vector<std::int32_t> list;
  const auto bit = modeBit(mode);
  for (const auto& row : filters) {
    if ((row.modes & bit) != 0 && row.hertz > 0) list.push_back(row.hertz);
  }
  if (list.empty()) list = usualWidths(upper(mode));
  std::sort(list.begin(), list.end());
  list.erase(std::unique(list.begin(), list.end()), list.end());
  return list;
}

std::int32_t RigctldCapabilities::usualWidth(std::string_view mode) const {
  // A description lists a mode's normal width first, then the narrow and the wide one.
  const auto bit = modeBit(mode);
  for (const auto& row : filters) {
    if ((row.modes & bit) != 0 && row.hertz > 0) return row.hertz;
  }
  const auto list = widths(mode);
  return list.empty() ? 0 : list[list.size() / 2];
}

std::int32_t RigctldCapabilities::nearestWidth(std::string_view mode, std::int32_t width) const {
  return nearestOf(widths(mode), width);
}

bool RigctldCapabilities::hasMode(std::string_view mode) const {
  return std::find(modes.begin(), modes.end(), mode) != modes.end();
}

std::int32_t RigctldCapabilities::finestStep() const {
  std::int32_t finest = 0;
  for (const auto& row : steps) {
    const auto step = std::max(row.hertz, 1);  // any step
    finest = finest == 0 ? step : std::min(finest, step);
  }
  return finest;
}

std::int32_t RigctldCapabilities::coarsestStep() const {
  std::int32_t coarsest = 0;
  for (const auto& row : steps) coarsest = std::max(coarsest, row.hertz);
  return coarsest;
}

bool isModeName(std::string_view text) {
  const auto letter = [](unsigned char byte) {
    return std::isalnum(byte) != 0 || byte == '-' || byte == '_';
  };
  return !text.empty() && text.size() <= 16 && std::isalpha(static_cast<unsigned char>(text[0])) &&
         std::all_of(text.begin(), text.end(), letter);
}

std::uint64_t modeBit(std::string_view mode) {
  for (const auto& row : kModeBits) {
    if (row.name == mode) return std::uint64_t{1} << row.bit;
  }
  return 0;
}

std::optional<std::int32_t> agcCode(std::string_view name) {
  // In the order of the codes, which are the protocol's whatever number a description puts first.
  constexpr std::array<std::string_view, 10> kNames = {
      "OFF", "SUPERFAST", "FAST", "SLOW", "USER", "MEDIUM", "AUTO", "LONG", "ON", "NONE"};
  const auto found = std::find(kNames.begin(), kNames.end(), name);
  if (found == kNames.end()) return std::nullopt;
  return static_cast<std::int32_t>(found - kNames.begin());
}

std::int32_t nearestOf(const std::vector<std::int32_t>& list, std::int32_t value) {
  const auto farther = [value](std::int64_t a, std::int64_t b) {
    return std::abs(a - value) < std::abs(b - value);
  };
  const auto nearest = std::min_element(list.begin(), list.end(), farther);
  return nearest == list.end() ? value : *nearest;
}

}  // namespace kelvane::sondrel
