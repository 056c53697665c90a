#include "components/ambrel/stations/known_sets.h"

#include <algorithm>
#include <functional>
#include <optional>
#include <utility>
#include <vector>

#include "base/encoding.h"
#include "base/number.h"
#include "base/text.h"
#include "components/ambrel/kilohertz.h"
#include "components/ambrel/line_cutter.h"
#include "components/ambrel/text_table.h"
#include "contract/modes.h"

namespace kelvane::ambrel {

namespace {

constexpr std::size_t kSetFields = 6;

/// A line has as many bytes at least, and a list mostly no more lines than that.
constexpr std::size_t kShortestSetLine = 8, kUsualSetLines = 100'000;

std::optional<Setting> readMode(std::string_view text) {
  if (text.empty()) return -1;
  const auto mode = modeNamed(text);
  if (!mode) return std::nullopt;
  return static_cast<Setting>(*mode);
}

std::optional<Setting> readFilter(std::string_view text) {
  if (text.empty()) return 0;
  const auto value = wholeNumber(text);
  if (!value || *value < 1 || *value > 1'000'000) return std::nullopt;
  return static_cast<Setting>(*value);
}

/// What is wrong with a line, nullptr for nothing; then the record has its frequency.
const char* read(const LineCutter& line, ListedRecord& listed) {
  if (line.fields() < 2 || line.fields() > kSetFields + 1) return "the number of fields is wrong";
  if (!readKilohertz(trimmed(line.field(0)), listed.frequency))
    return "the frequency cannot be read";
  if (trimmed(line.field(1)).empty()) return "there is no name";
  if (!readMode(trimmed(line.field(4)))) return "the mode is unknown";
  if (!readFilter(trimmed(line.field(5)))) return "the filter is no bandwidth in Hz";
  if (!trimmed(line.field(kSetFields)).empty()) return "the number of fields is wrong";
  listed.source.line = static_cast<std::uint32_t>(line.offset());
  return nullptr;
}

/// The sets of a list by their names. There may be thousands in one file: their places stand in one
/// row, since a node for each would take more time than the lines do.
class SetPlaces {
 public:
  explicit SetPlaces(std::vector<std::string>& names) : names_(names) {}

  /// Place of the set of that name; made where it is not there yet.
  std::uint16_t named(std::string_view name) {
    const auto hash = static_cast<std::uint32_t>(std::hash<std::string_view>()(name));
    Slot& slot = slotOf(hash, name);
    if (slot.place != kFree) return static_cast<std::uint16_t>(slot.place);
    slot = {hash, static_cast<std::uint32_t>(names_.size())};
    names_.emplace_back(name);
    const auto made = static_cast<std::uint16_t>(slot.place);
    if (names_.size() * 2 > slots_.size()) grow();
    return made;
  }

 private:
  static constexpr std::uint32_t kFree = ~std::uint32_t{0};
  struct Slot {
    std::uint32_t hash = 0;
    std::uint32_t place = kFree;
  };

  /// Where that name is, or is to be.
  Slot& slotOf(std::uint32_t hash, std::string_view name) {
    const std::size_t last = slots_.size() - 1;
    std::size_t i = hash & last;
    while (slots_[i].place != kFree && (slots_[i].hash != hash || names_[slots_[i].place] != name))
      i = (i + 1) & last;
    return slots_[i];
  }

  void grow() {
    const std::vector<Slot> before = std::exchange(slots_, std::vector<Slot>(slots_.size() * 2));
    for (const Slot& slot : before) {
      if (slot.place != kFree) slotOf(slot.hash, names_[slot.place]) = slot;
    }
  }

  std::vector<std::string>& names_;
  std::vector<Slot> slots_ = std::vector<Slot>(256);  ///< a power of two, half of them free
};

void readLines(StationList& list, std::string_view title) {
  std::string_view set = title;
  std::uint16_t place = 0;
  bool placed = false;
  SetPlaces places(list.sets);
  // What grows while it is filled is copied again and again.
  list.records.reserve(std::min(list.text.size() / kShortestSetLine, kUsualSetLines));
  LineCutter line(list.text);
  while (line.next()) {
    const std::string_view content = trimmed(line.line());
    if (content.empty() || content.front() == '#') continue;
    if (content.front() == '[' && content.back() == ']' && list.sets.size() < kMostSets) {
      set = trimmed(content.substr(1, content.size() - 2));
      placed = false;
      continue;
    }
    ListedRecord listed;
    if (const char* problem = read(line, listed)) {
      list.problems.add(line.number(), problem);
      continue;
    }
    if (!std::exchange(placed, true)) place = places.named(set);
    listed.record.set = place;
    list.records.push_back(listed);
  }
}

}  // namespace

StationList readKnownSets(std::string text, std::string_view title) {
  StationList list;
  list.refusal = checkText(text).reason();
  if (!list.refusal.empty()) return list;
  if (text.starts_with("\xEF\xBB\xBF")) text.erase(0, 3);
  list.text = isUtf8(text) ? std::move(text) : utf8FromLatin1(text);
  readLines(list, title);
  list.count = list.records.size();
  if (list.records.empty()) {
    list.refusal = "there is no known frequency in it";
    if (list.problems.count > 0) list.refusal += ". " + list.problems.text();
  }
  return list;
}

KnownLine knownLineAt(std::string_view text, std::size_t offset) {
  LineCutter line(text.substr(offset));
  line.next();
  const auto words = [&line](std::size_t place) { return std::string(trimmed(line.field(place))); };
  return {words(1), words(2), words(3), readMode(trimmed(line.field(4))).value_or(-1),
          readFilter(trimmed(line.field(5))).value_or(0)};
}

}  // namespace kelvane::ambrel
