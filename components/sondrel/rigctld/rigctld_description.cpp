#include "components/sondrel/rigctld/rigctld_description.h"

#include <algorithm>
#include <charconv>
#include <string_view>

#include "base/text.h"
#include "components/sondrel/rigctld/rigctld_reply.h"

namespace kelvane::sondrel {

namespace {

using Words = std::vector<std::string_view>;

constexpr std::size_t kMostRows = 256;

Words words(std::string_view line) {
  Words found;
  for (const auto part : split(line, ' ')) {
    if (!trimmed(part).empty()) found.push_back(trimmed(part));
  }
  return found;
}

std::uint64_t maskOf(std::string_view text) {
  if (text.starts_with("0x")) text.remove_prefix(2);
  std::uint64_t mask = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), mask, 16);
  return error == std::errc() && end == text.data() + text.size() ? mask : 0;
}

/// Walks through the description, whose parts stand one after the other without names.
class Description {
 public:
  explicit Description(const std::vector<std::string>& lines) : lines_(lines) {}

  std::optional<RigctldCapabilities> read();

 private:
  Words next() { return place_ < lines_.size() ? words(lines_[place_++]) : Words{}; }
  std::int32_t nextNumber();
  bool readRanges(std::vector<FrequencyRange>& ranges);
  bool readRows(std::vector<ModeRow>& rows);
  std::vector<std::int32_t> decibels();
  void readMasks();
  void readNamed();

  const std::vector<std::string>& lines_;
  std::size_t place_ = 0;
  RigctldCapabilities found_;
};

std::int32_t Description::nextNumber() {
  const auto line = next();
  return line.empty() ? 0 : wholeOf(line[0]).value_or(0);
}

/// Rows of "start end modes low high vfo ant" up to a row of zeros.
bool Description::readRanges(std::vector<FrequencyRange>& ranges) {
  for (std::size_t row = 0; row < kMostRows; ++row) {
    const auto line = next();
    if (line.size() != 7) return false;
    const auto low = numberOf(line[0]);
    const auto high = numberOf(line[1]);
    if (!low || !high) return false;
    if (*high == 0) return true;
    if (*low >= 0 && *low < *high) ranges.push_back({*low, *high});
  }
  return false;
}

/// Rows of "modes hertz" up to a row of zeros.
bool Description::readRows(std::vector<ModeRow>& rows) {
  for (std::size_t row = 0; row < kMostRows; ++row) {
    const auto line = next();
    if (line.size() != 2) return false;
    const auto modes = maskOf(line[0]);
    const auto hertz = wholeOf(line[1]);
    if (!hertz) return false;
    if (modes == 0) return true;
    if (*hertz >= 0) rows.push_back({modes, *hertz});
  }
  return false;
}

std::vector<std::int32_t> Description::decibels() {
  std::vector<std::int32_t> list;
  for (const auto word : next()) {
    const auto value = wholeOf(word);
    if (value && *value > 0 && *value < 200) list.push_back(*value);
  }
  std::sort(list.begin(), list.end());
  list.erase(std::unique(list.begin(), list.end()), list.end());
  return list;
}

/// Get and set masks of functions, levels and parameters. Only the setting ones can be believed.
void Description::readMasks() {
  std::uint64_t masks[6] = {};
  for (auto& mask : masks) {
    const auto line = next();
    mask = line.empty() ? 0 : maskOf(line[0]);
  }
  struct Settable {
    RigItem item;
    int mask;
    int bit;
  };
  constexpr Settable kSettable[] = {
      {RigItem::Blanker, 1, 1}, {RigItem::Preamp, 3, 0}, {RigItem::Attenuator, 3, 1},
      {RigItem::Shift, 3, 6},   {RigItem::Pitch, 3, 11}, {RigItem::Agc, 3, 17},
      {RigItem::Clock, 5, 5},
  };
  for (const auto& row : kSettable) {
    if (((masks[row.mask] >> row.bit) & 1U) != 0) found_.settable.add(row.item);
  }
}

/// AGC settings by their names: the numbers before them are places in a list, not codes.
std::vector<AgcLevel> agcLevelsIn(std::string_view text) {
  std::vector<AgcLevel> levels;
  for (const auto word : words(text)) {
    const auto name = word.substr(std::min(word.find('=') + 1, word.size()));
    const auto code = agcCode(name);
    const AgcLevel level{std::string(name), code.value_or(0)};
    if (code && std::find(levels.begin(), levels.end(), level) == levels.end()) {
      levels.push_back(level);
    }
  }
  return levels;
}

/// The tail of "key=value" lines.
void Description::readNamed() {
  for (; place_ < lines_.size(); ++place_) {
    const std::string_view line = lines_[place_];
    const auto equals = line.find('=');
    if (equals == std::string_view::npos) continue;
    const auto key = line.substr(0, equals);
    const auto value = line.substr(equals + 1);
    if (key == "rig_model") found_.modelNumber = wholeOf(trimmed(value)).value_or(0);
    if (key == "rigctld_version") found_.version = trimmed(value);
    if (key == "agc_levels") found_.agcLevels = agcLevelsIn(value);
  }
}

std::optional<RigctldCapabilities> Description::read() {
  const auto version = next();
  if (version.size() != 1 || !wholeOf(version[0])) return std::nullopt;
  const bool whole = *wholeOf(version[0]) >= 1 && lines_.back() == "done";
  found_.dialect = whole ? Dialect::Extended : Dialect::Static;
  found_.modelNumber = nextNumber();
  next();  // once a region, always 0
  std::vector<FrequencyRange> sending;
  if (!readRanges(found_.ranges) || !readRanges(sending)) return found_;
  if (!readRows(found_.steps) || !readRows(found_.filters)) return found_;
  nextNumber();  // most RIT
  nextNumber();  // most XIT
  found_.mostShift = std::max(0, nextNumber());
  nextNumber();  // announces
  found_.preamps = decibels();
  found_.attenuators = decibels();
  readMasks();
  readNamed();
  return found_;
}

}  // namespace

std::optional<RigctldCapabilities> readDescription(const std::vector<std::string>& lines) {
  if (lines.empty()) return std::nullopt;
  return Description(lines).read();
}

std::string modelIn(const std::vector<std::string>& lines) {
  std::string maker;
  std::string model;
  for (const std::string_view line : lines) {
    constexpr std::string_view kModel = "Model name:";
    constexpr std::string_view kMaker = "Mfg name:";
    // Servers differ in their capitals.
    const auto begins = [&](std::string_view label) {
      return upper(line.substr(0, label.size())) == upper(label);
    };
    if (begins(kModel)) model = trimmed(line.substr(kModel.size()));
    if (begins(kMaker)) maker = trimmed(line.substr(kMaker.size()));
    if (!model.empty() && !maker.empty()) break;
  }
  return std::string(trimmed(maker + " " + model));
}

std::vector<std::string> modesIn(const std::vector<std::string>& lines) {
  std::vector<std::string> modes;
  for (const std::string_view line : lines) {
    if (reportOf(line)) continue;
    for (const auto word : words(line)) {
      if (isModeName(word) && modes.size() < 64) modes.emplace_back(word);
    }
  }
  return modes;
}

}  // namespace kelvane::sondrel
