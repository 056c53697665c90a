#include "companions/channel_table.h"

#include <algorithm>

#include "base/number.h"
#include "controls/channel_step.h"
#include "ui/key_codes.h"

namespace kelvane {

namespace {

using enum ChannelValue;

const std::vector<std::string> kSkipWords{"Keep", "Skip"};

/// The value column that a grid's column shows; column 0 is the number.
ChannelValue valueAt(int column) { return static_cast<ChannelValue>(column - 1); }

bool isNumber(ChannelValue value) { return value == Frequency || value == Bfo || value == Filter; }

}  // namespace

ChannelTable::ChannelTable(ReceiverComponent& component, ChannelKeys& keys)
    : component_(component),
      keys_(keys),
      modes_(component, SettingNames::What::Modes),
      agc_(component, SettingNames::What::Agc) {}

std::vector<GridColumn> ChannelTable::columns() {
  const auto number = [](const char* caption, int width) {
    return GridColumn{caption, width, true, false, true, true, {}};
  };
  const auto pick = [](const char* caption, int width, const char* tip) {
    return GridColumn{caption, width, false, true, true, true, tip};
  };
  return {{"N\u00B0", 29, false, false, false, true, {}},
          number("Frequency", 73),
          number("BFO", 53),
          pick("Mode", 51, "Select Mode from list"),
          number("Filter", 48),
          pick("AGC", 48, "Select Agc from list"),
          pick("MSK", 45, "Select Agc from list")};
}

void ChannelTable::open(Index rx) {
  rx_ = rx;
  first_ = component_.GetRxChnFirst(rx);
  count_ = std::max(component_.GetRxChnCount(rx).value(), first_);
  skip_ = component_.HasRxChnSkip(rx);
  modes_.open(rx);
  agc_.open(rx);
  empty();
}

void ChannelTable::moved(Index rx) {
  rx_ = rx;
  modes_.open(rx);
  agc_.open(rx);
}

void ChannelTable::empty() {
  edits_.clear();
  for (auto* table : {&working_, &reference_, &sent_})
    table->assign(static_cast<std::size_t>(count_ - first_), ChannelRow{});
  underWay_.assign(working_.size(), false);
}

void ChannelTable::report(Channel channel, const ChannelRow& row) {
  if (!has(channel)) return;
  for (auto* table : {&working_, &reference_, &sent_}) (*table)[place(channel)] = row;
  underWay_[place(channel)] = false;
}

void ChannelTable::edit(const ChannelRows& rows) {
  ChannelRows before;
  for (const auto& [channel, row] : rows) {
    if (has(channel)) before.emplace_back(channel, working(channel));
  }
  if (before.empty()) return;
  edits_.add([this, before = std::move(before)] {
    for (const auto& [channel, row] : before) working_[place(channel)] = row;
  });
  // Last, since nothing can fail here: an edit that can be undone is made whole or not at all.
  for (const auto& [channel, row] : rows) {
    if (has(channel)) working_[place(channel)] = row;
  }
  keys_.edited();
}

bool ChannelTable::modified(Channel channel) const {
  const bool differs = !working(channel).same(reference_[place(channel)]);
  return reported(channel) && (differs || underWay_[place(channel)]);
}

bool ChannelTable::unsaved() const {
  return !std::ranges::equal(working_, sent_,
                             [](const auto& a, const auto& b) { return a.same(b); });
}

std::string ChannelTable::cell(GridRow row, int column) const {
  if (column == 0) return channelText(channelOf(row), count_);
  const ChannelValue value = valueAt(column);
  const auto& held = working_[row][value];
  if (!held) return {};
  if (value == Mode) return modes_.name(*held);
  if (value == Agc) return agc_.name(*held);
  if (value == Skip) return kSkipWords[*held == 0 ? 0 : 1];
  // A channel that is in use has some filter: 0 says that it is not known.
  if (value == Filter && *held == 0 && !working_[row].free()) return {};
  return std::to_string(*held);
}

void ChannelTable::store(GridCell cell, const std::string& text) {
  if (cell.column == 0) return;
  const ChannelValue value = valueAt(cell.column);
  ChannelRow row = working_[cell.row];
  if (value == Mode)
    row[value] = modes_.value(text);
  else if (value == Agc)
    row[value] = agc_.value(text);
  else if (value == Skip)
    row[value] = text == kSkipWords[0] ? 0 : 1;
  else if (text.empty())
    row[value].reset();
  else
    row[value] = nearestLong(num(text));
  edit({{channelOf(cell.row), row}});
}

bool ChannelTable::accepts(int column, char32_t character) const {
  const bool digit = character >= '0' && character <= '9';
  if (column == 0) return false;
  if (valueAt(column) == Bfo) return digit || character == '+' || character == '-';
  return digit || !isNumber(valueAt(column));
}

double ChannelTable::limited(double value, ChannelValue column) const {
  const auto between = [value](double low, double high) {
    return value < low ? low : std::min(value, high);
  };
  if (column == Frequency)
    return between(component_.GetRxFrqMin(rx_).value(), component_.GetRxFrqMax(rx_).value());
  if (column == Bfo)
    return between(component_.GetRxBfoMin(rx_).value(), component_.GetRxBfoMax(rx_).value());
  return value;
}

std::string ChannelTable::corrected(GridCell cell, const std::string& text) const {
  if (cell.column == 0 || !isNumber(valueAt(cell.column))) return text;
  const ChannelValue value = valueAt(cell.column);
  if (text.empty()) return value == Bfo ? text : this->cell(cell.row, cell.column);
  return std::to_string(nearestLong(limited(num(text), value)));
}

std::vector<std::string> ChannelTable::choices(int column) const {
  if (column == 0) return {};
  switch (valueAt(column)) {
    case Mode:
      return modes_.available();
    case Agc:
      return agc_.available();
    case Skip:
      return skip_ ? kSkipWords : std::vector<std::string>();
    default:
      return {};
  }
}

bool ChannelTable::keyDown(int keyCode, int shift) {
  if (shift != 0) return false;
  if (keyCode == key::Space) {
    keys_.getIt();
    return true;
  }
  if (keyCode == key::Delete) {
    keys_.emptyChannel();
    return true;
  }
  return false;
}

bool ChannelTable::undo() {
  if (!edits_.takeBack()) return false;
  keys_.edited();
  return true;
}

}  // namespace kelvane
