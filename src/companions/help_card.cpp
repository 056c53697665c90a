#include "companions/help_card.h"

#include <array>

namespace kelvane {

namespace {

// clang-format off
#define TEXT_OF(number) #number
#define NUMBER(number) TEXT_OF(number)

#define TITLE(text) "\\pard\\s1\\b\\fs28\\sa60 " text "\\b0\\par\n"
#define SECTION(text) "\\pard\\s2\\b\\fs22\\sb60 " text "\\b0\\par\n"
#define FROM(text) "\\pard\\s0\\i\\fs18\\sa40 " text "\\i0\\par\n"
#define ROW(keys, action) "\\pard\\s0\\fs18\\tx2400 {\\b " keys "}\\tab " action "\\par\n"
#define THREE(key, action, key2, action2, key3, action3)                                       \
  "\\pard\\s0\\fs18\\tx700\\tx2000\\tx2700\\tx4300\\tx5000 {\\b " key "}\\tab " action         \
  "\\tab {\\b " key2 "}\\tab " action2 "\\tab {\\b " key3 "}\\tab " action3 "\\par\n"
#define HEADS(head, head2, head3)                                                              \
  "\\pard\\s0\\fs18\\tx700\\tx2000\\tx2700\\tx4300\\tx5000 {\\ul " head "}\\tab \\tab {\\ul " \
  head2 "}\\tab \\tab {\\ul " head3 "}\\par\n"
#define END "\\pard\\s0\\fs18 ________________________________________\\par\n"

#define LEFT "{\\f1\\'ac}"
#define UP "{\\f1\\'ad}"
#define RIGHT "{\\f1\\'ae}"
#define DOWN "{\\f1\\'af}"

constexpr std::string_view kCard =
    "{\\rtf1\\ansi\\ansicpg1252\\deff0\\uc1"
    "{\\fonttbl{\\f0\\fswiss\\fcharset0 @FONT;}{\\f1\\ftech\\fcharset2 Symbol;}}"
    "{\\stylesheet{\\s0\\fs18 Normal;}{\\s1\\b\\fs28 heading 1;}{\\s2\\b\\fs22 heading 2;}}\n"
    "\\f0" TITLE("Kelvane " NUMBER(KELVANE_VERSION_MAJOR) "." NUMBER(
        KELVANE_VERSION_MINOR) "." NUMBER(KELVANE_VERSION_REVISION) " keyboard commands")

    SECTION("COMMUNICATIONS") FROM("From main window")
    ROW("L / U", "Lock / Unlock")
    ROW("TAB", "Next Receiver")
    END

    SECTION("DATA EXCHANGE") FROM("From main window")
    ROW("CTL-C", "Frequency to Clipboard")
    ROW("CTL-V", "Clipboard to Frequency")
    END

    SECTION("RECEIVER CONTROL") FROM("From main window")
    HEADS("MODE", "FILTER", "AGC")
    THREE("MA", "AM", "FN", "Narrow", "AS", "Slow")
    THREE("MF", "FM", "FI", "Inter", "AF", "Fast")
    THREE("MU", "USB", "FM", "Medium", "AM", "Med.")
    THREE("ML", "LSB", "FW", "Wide", "", "")
    THREE("MC", "CW", "FR", "Roof", "", "")
    HEADS("", "Preselector", "")
    THREE("MR", "RTTY", "P0", "Off", "", "")
    THREE("MX", "FAX", "P1", "On", "", "")
    THREE("MB", "Best", "FB", "Best", "", "")
    ROW("HHHHB", "Set BFO")
    ROW("HHHHF", "Set Filter")
    END

    SECTION("FREQUENCY SETTING") FROM("From main window")
    ROW("MMMKKK.HHH CR", "Set new carrier frequency")
    ROW(":MMMKKK.HHH CR", "Set new channelized frequency")
    ROW("DMMMKKK.HHH CR", "Set new DRM frequency")
    ROW("MMMKKK.HHH +", "Add to current frequency")
    ROW("MMMKKK.HHH -", "Subtract from frequency")
    ROW("HHHHHHH " RIGHT, "Set local frequency step")
    ROW(LEFT " / " RIGHT, "Up/Down local frequency step")
    ROW("SHF " LEFT " / SHF " RIGHT, "Up/Down 1Hz")
    ROW("CTL " LEFT " / CTL " RIGHT, "Up/Down 10Hz")
    ROW("ALT " LEFT " / ALT " RIGHT, "Up/Down 100Hz")
    ROW("+ / -", "Next/Previous Bandplan")
    ROW(UP " / " DOWN, "Up/Down Bandplan channel step")
    ROW("SHF " UP " / SHF " DOWN, "Up/Down 1Hz")
    ROW("CTL " UP " / CTL " DOWN, "Up/Down 10Hz")
    ROW("ALT " UP " / ALT " DOWN, "Up/Down 100Hz")
    ROW("CTR+ / CTR-", "Next/Previous known frequency")
    ROW("ALT+ / ALT-", "Next/Previous in current set")
    ROW("CTRALT+ / CTRALT-", "Next/Previous set")
    ROW("HOME", "Nearest MHz or Known frequency")
    ROW("ESC", "Cancel operation")
    FROM("On a selected digit")
    ROW(LEFT " / " RIGHT, "Next/Previous digit")
    ROW(UP " / " DOWN, "Next/Previous value")
    ROW(UP " " UP " / " DOWN " " DOWN, "Next/Previous 3Khz step")
    ROW("HOME", "Round to MHz")
    END

    SECTION("CHANNEL SETTING") FROM("From main window")
    ROW("S", "Show Channels settings")
    ROW("nnS", "Store in channel nn")
    ROW("nnC", "Recall Channel nn")
    ROW("C+ / C-", "Next/Previous Channel")
    FROM("From channel window")
    ROW(UP " / " DOWN, "Up/Down in channel record table")
    ROW(LEFT " / " RIGHT, "Left/Right in select record")
    ROW("SHF " UP " / SHF " DOWN, "Up/Down and select channel")
    ROW("SPACE", "Load current setting in table")
    END

    SECTION("LOGFILE SETTING") FROM("From main window")
    ROW("SPACE", "Show log data and store current setting")
    ROW("G", "Show log file data")
    FROM("From main window")
    ROW(UP " / " DOWN, "Up/Down in log record table")
    ROW(LEFT " / " RIGHT, "Left/Right in select log record")
    ROW("SHF " UP " / SHF " DOWN, "Up/Down and send to receiver")
    END

    SECTION("DATABASE CONTROL") FROM("From main window")
    ROW("R", "Cycle through Region")
    ROW("K", "Show Known frequencies list")
    ROW("Y", "Show my stations")
    ROW("CTL-Y", "Take present setting into my stations")
    ROW("E", "Edit/Configure Database source")
    ROW("D", "Open frequency Database")
    END

    SECTION("PANEL") FROM("From main window")
    ROW("F1", "Show this card")
    ROW("F7", "Show all receivers")
    ROW("F8", "Show level traces")
    ROW("F6 / SHF F6", "Next/Previous group of controls")
    ROW("CTL F6 / CTLSHF F6", "Next/Previous button of the group")
    ROW("CR", "Press the button")
    FROM("From all receivers (F7)")
    ROW(UP " / " DOWN, "Next row")
    ROW(LEFT " / " RIGHT, "Tune the row's receiver")
    ROW("MMMKKK.HHH CR", "Tune the row's receiver to it")
    ROW("CR", "Show the row's receiver")
    ROW("CTL 1..8", "Show a receiver")
    ROW("CTL-C / CTL-V", "Copy a row's setting to another")
    ROW("CTL-Z", "Take a copy back")
    FROM("From level traces (F8)")
    ROW("1..8", "Show or hide a receiver")
    ROW("+ / -", "Longer/Shorter time")
    ROW("PGUP / PGDN", "Back/On in time")
    ROW(LEFT " / " RIGHT, "Move the cursor")
    ROW(UP " / " DOWN, "Move the scale")
    ROW("SPACE", "Let the picture stand or run")
    ROW("CTL " UP " / CTL " DOWN, "Change the compared receiver's offset")
    ROW("CTL-C", "Comparison to Clipboard")
    FROM("From this card")
    ROW("ALT S", "Save a report for help")
    "}";
// clang-format on

struct Arrow {
  std::string_view symbol, character, word;
};
constexpr std::array<Arrow, 4> kArrows{{{LEFT, "\\u8592?", "Left"},
                                        {RIGHT, "\\u8594?", "Right"},
                                        {UP, "\\u8593?", "Up"},
                                        {DOWN, "\\u8595?", "Down"}}};

void replaceAll(std::string& text, std::string_view from, std::string_view to) {
  for (auto at = text.find(from); at != std::string::npos; at = text.find(from, at + to.size()))
    text.replace(at, from.size(), to);
}

}  // namespace

std::string helpCard(std::string_view font, Arrows arrows) {
  std::string card(kCard);
  replaceAll(card, "@FONT", font);
  if (arrows == Arrows::Symbol) return card;
  for (const Arrow& arrow : kArrows)
    replaceAll(card, arrow.symbol, arrows == Arrows::Words ? arrow.word : arrow.character);
  return card;
}

}  // namespace kelvane
