#include "ui/main_controls.h"

#include <algorithm>
#include <array>
#include <string>
#include <type_traits>

#include "base/text.h"
#include "ui/shared_width.h"

namespace kelvane {

namespace {

constexpr int kLeft = 8;
constexpr int kWidth = kMainWidth - 2 * kLeft;
constexpr int kModWidth = sharedWidth(kWidth, 5);

// Rows of the black panel: the digits, the station, the steps.
constexpr int kDigitRow = 46;
constexpr int kStationRow = 144;
constexpr int kStepRow = 178;
constexpr int kPanelHeight = 172;
// Below it: the receiver's settings, the panel's own buttons.
constexpr int kSettingRow = 214;
constexpr int kButtonRow = 256;
// Eight tabs leave this much of their strip, for what shows all receivers.
constexpr int kBesideTabs = 642;
// The windows' buttons stand in the middle between the forwarding and the options.
constexpr int kOuterWidth = 65;
constexpr int kOpenerWidth = 63;
constexpr int kOpenerGap = (kWidth - 4 * kOuterWidth - 7 * kOpenerWidth) / 2;

/// The value that a control's row shows; `first` is the array's element that the row begins with.
template <auto member, int first = 0>
Control& shownBy(MainView& view, int element) {
  if constexpr (std::is_same_v<decltype(member), Control MainView::*>)
    return view.*member;
  else
    return (view.*member)[static_cast<std::size_t>(first + element)];
}

// A control under its name: its number, its name and its value are called the same. A part of an
// array begins at one of its elements.
#define CONTROL(name, ...) \
  { id::name, #name, shownBy<&MainView::name>, __VA_ARGS__ }
#define PART(name, first, ...) \
  { id::name + first, #name, shownBy<&MainView::name, first>, __VA_ARGS__ }

std::span<const ControlRow> rows() {
  using enum Kind;
  using enum Font;
  using enum Align;
  constexpr static auto kRows = std::to_array<ControlRow>({
      CONTROL(FrqFocus, Keys, Normal, Left, {60, -30, 60, 20}, "Frequency entry"),
      CONTROL(FrqDigit, Digit, Digits, Centre, {58, kDigitRow, 47, 70}, "Frequency digit", 9, 47),
      CONTROL(ModEvent, Button, Bold, Centre, {kLeft, kSettingRow, kModWidth, 34},
              "Mode|Filter|AGC|Attenuator|Noise blanker", 5, kModWidth),
      CONTROL(GenEvent, Toggle, Normal, Centre, {kLeft, kButtonRow, kOuterWidth, 26}, "Forwarding",
              2, kOuterWidth),
      PART(GenEvent, 2, Button, Normal, Centre,
           {kLeft + 2 * kOuterWidth, kButtonRow, kOuterWidth, 26}, "Forwarding 3"),
      CONTROL(Opener, Button, Normal, Centre,
              {kLeft + 3 * kOuterWidth + kOpenerGap, kButtonRow, kOpenerWidth, 26}, "", 7,
              kOpenerWidth),
      PART(Opener, 7, Button, Small, Centre, {kBesideTabs, 4, 28, 22}, ""),
      PART(Opener, 8, Button, Small, Centre, {kBesideTabs + 28, 4, 46, 22}, ""),
      {id::ConfigButton,
       "Config",
       shownBy<&MainView::Config>,
       Button,
       Normal,
       Centre,
       {kLeft + kWidth - kOuterWidth, kButtonRow, kOuterWidth, 26},
       "Configure parameters"},
      CONTROL(RxMask, Text, Status, Centre, {56, 49, 456, 62}, "Link state"),
      CONTROL(RxWhy, Text, Normal, Centre, {56, 112, 456, 22}, "Why"),
      CONTROL(LockImg, Lock, Normal, Centre, {22, 50, 26, 30}, "Remote control", 2, 0),
      CONTROL(FrqDotit, Text, Bold, Centre, {22, 90, 26, 24}, "Entry lamp"),
      CONTROL(SM, Label, Status, Right, {524, kDigitRow, 124, 40}, "S-meter"),
      CONTROL(SQ, Text, Bold, Centre, {654, kDigitRow, 46, 40}, "Squelch open"),
      CONTROL(FrqBfo, Label, Bold, Right, {560, 94, 64, 24}, "BFO offset"),
      CONTROL(HFF, Label, Bold, Right, {634, 94, 66, 24}, "HF filter"),
      CONTROL(DDESts, Text, Small, Centre, {654, 122, 46, 16}, "DDE link"),
      CONTROL(UtcTime, Text, Small, Right, {550, 122, 92, 16}, "Universal Time"),
      CONTROL(Band, Label, Normal, Left, {22, kStationRow, 420, 24}, "Band or station"),
      CONTROL(FDif, Label, Bold, Right, {446, kStationRow, 60, 24}, "Offset from known frequency"),
      CONTROL(BMod, Label, Bold, Right, {524, kStationRow, 84, 24}, "Best mode"),
      CONTROL(BFlt, Label, Bold, Right, {614, kStationRow, 86, 24}, "Best filter"),
      CONTROL(IStep, Text, Bold, Centre, {20, kStepRow, 22, 22}, "Step sign", 2, 98),
      PART(VStep, 0, Label, Normal, Left, {44, kStepRow, 68, 22}, "Step 1"),
      PART(VStep, 1, Text, Normal, Left, {44 + 98, kStepRow, 68, 22}, "Step 2"),
      CONTROL(IChn, Text, Normal, Left, {218, kStepRow, 26, 22}, "Channel sign"),
      CONTROL(VChn, Label, Bold, Left, {244, kStepRow, 36, 22}, "Channel"),
      CONTROL(LChn, Text, Normal, Left, {282, kStepRow, 36, 22}, "Channel being read"),
      CONTROL(IBank, Text, Bold, Left, {322, kStepRow, 24, 22}, "Bank"),
      CONTROL(VBank, Text, Normal, Left, {348, kStepRow, 92, 22}, "Record number"),
      CONTROL(FAlt, Label, Normal, Right, {444, kStepRow, 86, 22}, "Channelized frequency"),
      CONTROL(RNG, Label, Bold, Centre, {546, kStepRow, 36, 22}, "Region"),
      CONTROL(IO, Lamp, Normal, Centre, {612, kStepRow + 2, 18, 18}, "Auxiliary line", 4, 23),
      CONTROL(Announced, Said, Small, Left, {130, -30, 60, 20}, ""),
      CONTROL(FrqFrame, Panel, Small, Centre, {kLeft, 34, kWidth, kPanelHeight}, "Frequency"),
  });
  return kRows;
}

#undef CONTROL
#undef PART

constexpr auto kEngravings = std::to_array<Engraving>({
    {"MHz", {50, 1, 141, 12}},
    {"kHz", {205, 1, 141, 12}},
    {"Hz", {360, 1, 141, 12}},
    {"BFO", {512, 64, 40, 16}},
});

constexpr auto kPoints = std::to_array<Place>({{195, 66, 6, 6}, {350, 66, 6, 6}});

std::string nameOf(const ControlRow& row, int element) {
  std::string_view names = row.speak;
  if (names.find('|') == names.npos)
    return std::string(names) + (row.count > 1 ? " " + std::to_string(element + 1) : "");
  for (; element > 0; --element) names.remove_prefix(names.find('|') + 1);
  return std::string(names.substr(0, names.find('|')));
}

}  // namespace

int widthToTheRight(MainView& view, int control) {
  constexpr int kGap = 4;
  const auto rows = mainControls();
  const auto own = std::ranges::find(rows, control, &ControlRow::id);
  if (own == rows.end()) return 0;
  int end = own->place.left + own->place.width;
  for (const ControlRow& row : rows) {
    if (row.place.top == own->place.top) end = std::max(end, row.place.left + row.place.width);
  }
  for (const ControlRow& row : rows) {
    const bool beside = row.place.top == own->place.top && row.place.left > own->place.left;
    if (beside && row.of(view, 0).visible) end = std::min(end, row.place.left - kGap);
  }
  return end - own->place.left;
}

std::string spokenWords(const ControlRow& row, int element, const Control& control) {
  if (!control.spoken.empty()) return control.spoken;
  const bool button = row.kind == Kind::Button || row.kind == Kind::Toggle;
  const std::string text = button ? spokenCaption(control.text) : control.text;
  if (row.speak.empty()) return text;
  const std::string name = nameOf(row, element);
  return text.empty() || text == " " ? name : name + ": " + text;
}

bool marksLetters(const ControlRow& row) {
  const bool button = row.kind == Kind::Button || row.kind == Kind::Toggle;
  return button && row.id != id::ModEvent;
}

std::span<const Place> groupPoints() { return kPoints; }

std::span<const ControlRow> mainControls() { return rows(); }

Control* controlOf(MainView& view, int id) {
  for (const ControlRow& row : rows()) {
    if (id >= row.id && id < row.id + row.count) return &row.of(view, id - row.id);
  }
  return nullptr;
}

std::span<const Engraving> engravings() { return kEngravings; }

}  // namespace kelvane
