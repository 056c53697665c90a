#include "own_list/station_grid.h"

#include <algorithm>
#include <iterator>
#include <memory>
#include <tuple>
#include <utility>

#include "base/number.h"
#include "base/text.h"
#include "components/ambrel/lists/entry_texts.h"
#include "ui/key_codes.h"

namespace kelvane {

namespace {

using lists::Entry;

constexpr const char* kYes = "yes";
constexpr int kKeyA = 'A', kKeyY = 'Y', kKeyZ = 'Z';

bool isYesNo(int column) { return column == StationGrid::Favourite || column == StationGrid::Skip; }

}  // namespace

std::vector<GridColumn> StationGrid::columns() {
  const auto text = [](const char* caption, int width) {
    return GridColumn{caption, width, false, false, true, true, {}};
  };
  const auto number = [](const char* caption, int width) {
    return GridColumn{caption, width, true, false, true, true, {}};
  };
  const auto pick = [](const char* caption, int width, const char* tip) {
    return GridColumn{caption, width, false, true, true, true, tip};
  };
  GridColumn mark{"*", 22, false, false, false, true, {}};
  return {mark,
          number("kHz", 76),
          text("Name", 170),
          pick("Mode", 62, "Choose the mode"),
          number("Width", 52),
          text("Group", 96),
          text("Tags", 96),
          text("UTC", 76),
          text("Days", 60),
          pick("Fav.", 40, "Favourite"),
          pick("Skip", 40, "Passed over when walking"),
          text("Note", 164)};
}

bool StationGrid::takes(const Entry& entry, const std::string& upperText) const {
  if (filter_.favourites && !entry.favourite) return false;
  if (!filter_.group.empty() && entry.group != filter_.group) return false;
  if (upperText.empty()) return true;
  return holdsUpper(entry.name, upperText) ||
         (isDigit(upperText[0]) && lists::khzText(entry.frequency).starts_with(upperText)) ||
         holdsUpper(entry.group, upperText) || holdsUpper(entry.tags, upperText) ||
         holdsUpper(entry.note, upperText);
}

void StationGrid::seek() {
  const std::string upperText = upper(trimmed(filter_.text));
  rows_.clear();
  std::ranges::copy_if(all_, std::back_inserter(rows_),
                       [&](Id id) { return takes(*store_.list().at(id), upperText); });
}

bool StationGrid::isBefore(Id a, Id b) const {
  if (descending_) std::swap(a, b);
  const Entry &one = *store_.list().at(a), &other = *store_.list().at(b);
  if (sort_ == Khz) return std::tie(one.frequency, a) < std::tie(other.frequency, b);
  if (sort_ == Width) return std::tie(one.width, a) < std::tie(other.width, b);
  return std::pair(upper(text(one, sort_)), a) < std::pair(upper(text(other, sort_)), b);
}

void StationGrid::sort() {
  const lists::OwnList& list = store_.list();
  for (Id id = 0; id < marks_.size(); ++id)
    if (id >= list.end() || !list.at(id)) mark(id, false);
  all_.clear();
  for (Id id = 0; id < list.end(); ++id)
    if (list.at(id)) all_.push_back(id);
  const auto byKey = [&](auto key) {
    std::vector<std::pair<decltype(key(*list.at(0))), Id>> keys;
    keys.reserve(all_.size());
    for (const Id id : all_) keys.emplace_back(key(*list.at(id)), id);
    std::ranges::sort(keys);
    std::ranges::transform(keys, all_.begin(), [](const auto& each) { return each.second; });
  };
  if (sort_ == Khz)
    byKey([](const Entry& entry) { return entry.frequency; });
  else if (sort_ == Width)
    byKey([](const Entry& entry) { return entry.width; });
  else if (sort_ == Mark)
    std::ranges::stable_sort(all_, {}, [&](Id id) { return !isMarked(id); });
  else
    byKey([&](const Entry& entry) { return upper(text(entry, sort_)); });
  if (descending_) std::ranges::reverse(all_);
}

/// After a change of a few entries the others are still in their order. False where that is too
/// much to be done one by one.
bool StationGrid::placeAnew(const std::vector<Id>& changed) {
  constexpr std::size_t kFew = 32;
  if (changed.empty() || changed.size() > kFew || sort_ == Mark) return false;
  const lists::OwnList& list = store_.list();
  std::erase_if(all_, [&](Id id) { return std::ranges::find(changed, id) != changed.end(); });
  for (const Id id : changed) {
    if (!list.at(id)) {
      mark(id, false);
      continue;
    }
    const auto behind = std::upper_bound(all_.begin(), all_.end(), id,
                                         [this](Id a, Id b) { return isBefore(a, b); });
    all_.insert(behind, id);
  }
  return true;
}

bool StationGrid::follow() {
  const std::uint64_t version = store_.list().version();
  const bool listChanged = version != soughtVersion_ || resort_;
  if (!listChanged && filter_ == soughtFilter_) return false;
  const bool oneStep = version == soughtVersion_ + 1 && !resort_;
  soughtVersion_ = version;
  soughtFilter_ = filter_;
  resort_ = false;
  if (listChanged && !(oneStep && placeAnew(store_.list().lastStep()))) sort();
  seek();
  return true;
}

GridRow StationGrid::rowOf(Id id) const {
  return static_cast<GridRow>(std::ranges::find(rows_, id) - rows_.begin());
}

std::vector<StationGrid::Id> StationGrid::markedShown() const {
  std::vector<Id> ids;
  if (marked_ > 0)
    std::ranges::copy_if(rows_, std::back_inserter(ids), [this](Id id) { return isMarked(id); });
  return ids;
}

std::vector<StationGrid::Id> StationGrid::chosen(GridRow current) const {
  std::vector<Id> ids = markedShown();
  if (ids.empty() && current < rows_.size()) ids.push_back(rows_[current]);
  return ids;
}

std::string StationGrid::text(const Entry& entry, int column) {
  switch (column) {
    case Khz:
      return lists::khzText(entry.frequency);
    case Name:
      return entry.name;
    case Mode:
      return lists::modeText(entry.mode);
    case Width:
      return entry.width > 0 ? std::to_string(entry.width) : std::string();
    case Group:
      return entry.group;
    case Tags:
      return entry.tags;
    case Utc:
      return lists::timesText(entry);
    case Days:
      return entry.days;
    case Favourite:
      return entry.favourite ? kYes : "";
    case Skip:
      return entry.skip ? kYes : "";
    case Note:
      return lists::oneLine(entry.note);
    default:
      return {};
  }
}

std::string StationGrid::cell(GridRow row, int column) const {
  // Between an edit and the next look a row's entry may be gone.
  if (row >= rows_.size() || rows_[row] >= store_.list().end()) return {};
  const lists::EntryPtr& entry = store_.list().at(rows_[row]);
  if (!entry) return {};
  if (column == Mark) return isMarked(rows_[row]) ? "*" : "";
  return text(*entry, column);
}

Result<> StationGrid::put(Entry& entry, int column, const std::string& typed) {
  const std::string text = lists::oneLine(typed);
  switch (column) {
    case Khz: {
      const auto read = lists::readFrequency(text, lists::Unit::Khz);
      if (!read) return read.failure();
      entry.frequency = *read;
      return {};
    }
    case Name:
      entry.name = text;
      return {};
    case Mode: {
      const auto mode = lists::modeOfWord(text);
      if (!mode) return Failure{"this mode is unknown"};
      entry.mode = *mode;
      return {};
    }
    case Width: {
      const auto width = text.empty() ? 0 : wholeNumber(text);
      if (!width || *width < 0 || *width > 10'000'000)
        return Failure{"the width is no bandwidth in Hz"};
      entry.width = static_cast<Setting>(*width);
      return {};
    }
    case Group:
      entry.group = text;
      return {};
    case Tags:
      entry.tags = text;
      return {};
    case Utc:
      if (lists::readTimesOf(text, entry)) return {};
      return Failure{"times are written 0600-0800"};
    case Days:
      entry.days = text;
      return {};
    case Favourite:
      entry.favourite = text == kYes;
      return {};
    case Skip:
      entry.skip = text == kYes;
      return {};
    case Note:
      entry.note = text;
      return {};
    default:
      return {};
  }
}

void StationGrid::store(GridCell cell, const std::string& text) {
  if (cell.row >= rows_.size() || cell.column == Mark) return;
  std::vector<Id> ids{rows_[cell.row]};
  // In a marked row the edit is for all that are marked, in an unmarked one for it alone.
  if (isMarked(ids.front())) ids = chosen(cell.row);
  lists::OwnList::Edits edits;
  for (const Id id : ids) {
    Entry entry = *store_.list().at(id);
    if (const Result<> done = put(entry, cell.column, text); !done)
      return commands_.refuse(done.reason());
    edits.emplace_back(id, std::make_shared<const Entry>(std::move(entry)));
  }
  store_.list().edit(edits);
  commands_.changed();
}

bool StationGrid::accepts(int column, char32_t character) const {
  const bool digit = character >= '0' && character <= '9';
  if (column == Mark) return false;
  if (column == Khz) return digit || character == '.' || character == ',';
  if (column == Width) return digit;
  if (column == Utc) return digit || character == '-' || character == ':';
  return character >= ' ';
}

std::string StationGrid::corrected(GridCell cell, const std::string& text) const {
  Entry entry;
  entry.frequency = 1;
  const Result<> fits = put(entry, cell.column, text);
  if (fits) return text;
  commands_.refuse(fits.reason());
  return this->cell(cell.row, cell.column);
}

std::vector<std::string> StationGrid::choices(int column) const {
  if (isYesNo(column)) return {"", kYes};
  if (column != Mode) return {};
  std::vector<std::string> modes = lists::modeTexts();
  modes.insert(modes.begin(), "");
  return modes;
}

bool StationGrid::keyDown(int keyCode, int shift) {
  const GridRow row = currentRow ? currentRow() : 0;
  if (shift == 0 && keyCode == key::Space && row < rows_.size()) {
    toggleMark(row);
    return true;
  }
  if (shift == 0 && keyCode == key::Delete) {
    commands_.remove();
    return true;
  }
  if (shift == key::CtrlHeld && keyCode == kKeyA) {
    const bool all = markedShown().size() == rows_.size();
    marks_.clear();
    marked_ = 0;
    for (const Id id : rows_) mark(id, !all);
    commands_.changed();
    return true;
  }
  if (shift == key::CtrlHeld && keyCode == kKeyZ) {
    commands_.undo();
    return true;
  }
  if (shift == key::CtrlHeld && keyCode == kKeyY) {
    commands_.redo();
    return true;
  }
  return false;
}

void StationGrid::mark(Id id, bool marked) {
  if (isMarked(id) == marked) return;
  if (id >= marks_.size()) marks_.resize(store_.list().end());
  marks_[id] = marked;
  if (marked)
    ++marked_;
  else
    --marked_;
}

void StationGrid::toggleMark(GridRow row) {
  mark(rows_[row], !isMarked(rows_[row]));
  commands_.changed();
}

bool StationGrid::clicked(GridCell cell) {
  if (cell.column != Mark || cell.row >= rows_.size()) return false;
  toggleMark(cell.row);
  return true;
}

void StationGrid::recall(GridRow row) {
  if (row < rows_.size()) commands_.tune(rows_[row]);
}

void StationGrid::headerClicked(int column) {
  descending_ = column == sort_ && !descending_;
  sort_ = column;
  resort_ = true;
  commands_.changed();
}

}  // namespace kelvane
