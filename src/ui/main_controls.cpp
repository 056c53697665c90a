#include "ui/main_controls.h"

#include <algorithm>
#include <array>
#include <string>

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
constexpr int kOpenerWidth = 66;
constexpr int kOpenerGap = (kWidth - 4 * 72 - 6 * kOpenerWidth) / 2;

constexpr auto kRows = std::to_array<ControlRow>({
    {id::FrqFocus,
     "FrqFocus",
     1,
     Kind::Keys,
     Font::Normal,
     Align::Left,
     {60, -30, 60, 20},
     0,
     "Frequency entry",
     [](MainView& v, int) -> Control& { return v.FrqFocus; }},
    {id::FrqDigit,
     "FrqDigit",
     9,
     Kind::Digit,
     Font::Digits,
     Align::Centre,
     {58, kDigitRow, 47, 70},
     47,
     "Frequency digit",
     [](MainView& v, int i) -> Control& { return v.FrqDigit[i]; }},
    {id::ModEvent,
     "ModEvent",
     5,
     Kind::Button,
     Font::Bold,
     Align::Centre,
     {kLeft, kSettingRow, kModWidth, 34},
     kModWidth,
     "Mode|Filter|AGC|Attenuator|Noise blanker",
     [](MainView& v, int i) -> Control& { return v.ModEvent[i]; }},
    {id::GenEvent,
     "GenEvent",
     2,
     Kind::Toggle,
     Font::Normal,
     Align::Centre,
     {kLeft, kButtonRow, 72, 26},
     72,
     "Forwarding",
     [](MainView& v, int i) -> Control& { return v.GenEvent[i]; }},
    {id::GenEvent + 2,
     "GenEvent",
     1,
     Kind::Button,
     Font::Normal,
     Align::Centre,
     {kLeft + 2 * 72, kButtonRow, 72, 26},
     0,
     "Forwarding 3",
     [](MainView& v, int) -> Control& { return v.GenEvent[2]; }},
    {id::Opener,
     "Opener",
     6,
     Kind::Button,
     Font::Normal,
     Align::Centre,
     {kLeft + 3 * 72 + kOpenerGap, kButtonRow, kOpenerWidth, 26},
     kOpenerWidth,
     "",
     [](MainView& v, int i) -> Control& { return v.Opener[i]; }},
    {id::Opener + 6,
     "Opener",
     1,
     Kind::Button,
     Font::Small,
     Align::Centre,
     {kBesideTabs, 4, 28, 22},
     0,
     "",
     [](MainView& v, int) -> Control& { return v.Opener[6]; }},
    {id::Opener + 7,
     "Opener",
     1,
     Kind::Button,
     Font::Small,
     Align::Centre,
     {kBesideTabs + 28, 4, 46, 22},
     0,
     "",
     [](MainView& v, int) -> Control& { return v.Opener[7]; }},
    {id::ConfigButton,
     "Config",
     1,
     Kind::Button,
     Font::Normal,
     Align::Centre,
     {kLeft + kWidth - 72, kButtonRow, 72, 26},
     0,
     "Configure parameters",
     [](MainView& v, int) -> Control& { return v.Config; }},
    {id::RxMask,
     "RxMask",
     1,
     Kind::Text,
     Font::Status,
     Align::Centre,
     {56, 49, 456, 62},
     0,
     "Link state",
     [](MainView& v, int) -> Control& { return v.RxMask; }},
    {id::RxWhy,
     "RxWhy",
     1,
     Kind::Text,
     Font::Normal,
     Align::Centre,
     {56, 112, 456, 22},
     0,
     "Why",
     [](MainView& v, int) -> Control& { return v.RxWhy; }},
    {id::LockImg,
     "LockImg",
     2,
     Kind::Lock,
     Font::Normal,
     Align::Centre,
     {22, 50, 26, 30},
     0,
     "Remote control",
     [](MainView& v, int i) -> Control& { return v.LockImg[i]; }},
    {id::FrqDotit,
     "FrqDotit",
     1,
     Kind::Text,
     Font::Bold,
     Align::Centre,
     {22, 90, 26, 24},
     0,
     "Entry lamp",
     [](MainView& v, int) -> Control& { return v.FrqDotit; }},
    {id::SM,
     "SM",
     1,
     Kind::Label,
     Font::Status,
     Align::Right,
     {524, kDigitRow, 124, 40},
     0,
     "S-meter",
     [](MainView& v, int) -> Control& { return v.SM; }},
    {id::SQ,
     "SQ",
     1,
     Kind::Text,
     Font::Bold,
     Align::Centre,
     {654, kDigitRow, 46, 40},
     0,
     "Squelch open",
     [](MainView& v, int) -> Control& { return v.SQ; }},
    {id::FrqBfo,
     "FrqBfo",
     1,
     Kind::Label,
     Font::Bold,
     Align::Right,
     {560, 94, 64, 24},
     0,
     "BFO offset",
     [](MainView& v, int) -> Control& { return v.FrqBfo; }},
    {id::HFF,
     "HFF",
     1,
     Kind::Label,
     Font::Bold,
     Align::Right,
     {634, 94, 66, 24},
     0,
     "HF filter",
     [](MainView& v, int) -> Control& { return v.HFF; }},
    {id::DDESts,
     "DDESts",
     1,
     Kind::Text,
     Font::Small,
     Align::Centre,
     {654, 122, 46, 16},
     0,
     "DDE link",
     [](MainView& v, int) -> Control& { return v.DDESts; }},
    {id::UtcTime,
     "UtcTime",
     1,
     Kind::Text,
     Font::Small,
     Align::Right,
     {550, 122, 92, 16},
     0,
     "Universal Time",
     [](MainView& v, int) -> Control& { return v.UtcTime; }},
    {id::Band,
     "Band",
     1,
     Kind::Label,
     Font::Normal,
     Align::Left,
     {22, kStationRow, 420, 24},
     0,
     "Band or station",
     [](MainView& v, int) -> Control& { return v.Band; }},
    {id::FDif,
     "FDif",
     1,
     Kind::Label,
     Font::Bold,
     Align::Right,
     {446, kStationRow, 60, 24},
     0,
     "Offset from known frequency",
     [](MainView& v, int) -> Control& { return v.FDif; }},
    {id::BMod,
     "BMod",
     1,
     Kind::Label,
     Font::Bold,
     Align::Right,
     {524, kStationRow, 84, 24},
     0,
     "Best mode",
     [](MainView& v, int) -> Control& { return v.BMod; }},
    {id::BFlt,
     "BFlt",
     1,
     Kind::Label,
     Font::Bold,
     Align::Right,
     {614, kStationRow, 86, 24},
     0,
     "Best filter",
     [](MainView& v, int) -> Control& { return v.BFlt; }},
    {id::IStep,
     "IStep",
     2,
     Kind::Text,
     Font::Bold,
     Align::Centre,
     {20, kStepRow, 22, 22},
     98,
     "Step sign",
     [](MainView& v, int i) -> Control& { return v.IStep[i]; }},
    {id::VStep,
     "VStep",
     1,
     Kind::Label,
     Font::Normal,
     Align::Left,
     {44, kStepRow, 68, 22},
     0,
     "Step 1",
     [](MainView& v, int) -> Control& { return v.VStep[0]; }},
    {id::VStep + 1,
     "VStep",
     1,
     Kind::Text,
     Font::Normal,
     Align::Left,
     {44 + 98, kStepRow, 68, 22},
     0,
     "Step 2",
     [](MainView& v, int) -> Control& { return v.VStep[1]; }},
    {id::IChn,
     "IChn",
     1,
     Kind::Text,
     Font::Normal,
     Align::Left,
     {218, kStepRow, 26, 22},
     0,
     "Channel sign",
     [](MainView& v, int) -> Control& { return v.IChn; }},
    {id::VChn,
     "VChn",
     1,
     Kind::Label,
     Font::Bold,
     Align::Left,
     {244, kStepRow, 36, 22},
     0,
     "Channel",
     [](MainView& v, int) -> Control& { return v.VChn; }},
    {id::LChn,
     "LChn",
     1,
     Kind::Text,
     Font::Normal,
     Align::Left,
     {282, kStepRow, 36, 22},
     0,
     "Channel being read",
     [](MainView& v, int) -> Control& { return v.LChn; }},
    {id::IBank,
     "IBank",
     1,
     Kind::Text,
     Font::Bold,
     Align::Left,
     {322, kStepRow, 24, 22},
     0,
     "Bank",
     [](MainView& v, int) -> Control& { return v.IBank; }},
    {id::VBank,
     "VBank",
     1,
     Kind::Text,
     Font::Normal,
     Align::Left,
     {348, kStepRow, 92, 22},
     0,
     "Record number",
     [](MainView& v, int) -> Control& { return v.VBank; }},
    {id::FAlt,
     "FAlt",
     1,
     Kind::Label,
     Font::Normal,
     Align::Right,
     {444, kStepRow, 86, 22},
     0,
     "Channelized frequency",
     [](MainView& v, int) -> Control& { return v.FAlt; }},
    {id::RNG,
     "RNG",
     1,
     Kind::Label,
     Font::Bold,
     Align::Centre,
     {546, kStepRow, 36, 22},
     0,
     "Region",
     [](MainView& v, int) -> Control& { return v.RNG; }},
    {id::IO,
     "IO",
     4,
     Kind::Lamp,
     Font::Normal,
     Align::Centre,
     {612, kStepRow + 2, 18, 18},
     23,
     "Auxiliary line",
     [](MainView& v, int i) -> Control& { return v.IO[i]; }},
    {id::Announced,
     "Announced",
     1,
     Kind::Said,
     Font::Small,
     Align::Left,
     {130, -30, 60, 20},
     0,
     "",
     [](MainView& v, int) -> Control& { return v.Announced; }},
    {id::FrqFrame,
     "FrqFrame",
     1,
     Kind::Panel,
     Font::Small,
     Align::Centre,
     {kLeft, 34, kWidth, kPanelHeight},
     0,
     "Frequency",
     [](MainView& v, int) -> Control& { return v.FrqFrame; }},
});

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

std::span<const ControlRow> mainControls() { return kRows; }

Control* controlOf(MainView& view, int id) {
  for (const ControlRow& row : kRows) {
    if (id >= row.id && id < row.id + row.count) return &row.of(view, id - row.id);
  }
  return nullptr;
}

std::span<const Engraving> engravings() { return kEngravings; }

}  // namespace kelvane
