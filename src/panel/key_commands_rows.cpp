#include <array>

#include "panel/key_commands.h"
#include "ui/key_codes.h"

namespace kelvane {

std::span<const CommandRow> commandRows() {
  using K = KeyCommands;
  using enum CommandRow::Input;
  using enum CommandRow::Needs;
  constexpr int kCtrlAlt = key::CtrlHeld | key::AltHeld;
  static constexpr auto rows = std::to_array<CommandRow>({
      {Character, 'L', 0, "", Nothing, "L", "Lock", &K::lock},
      {Character, 'U', 0, "", Nothing, "U", "Unlock", &K::unlock},
      {Character, key::Tab, 0, "", Nothing, "TAB", "Next Receiver", &K::nextReceiver},
      {Character, key::Escape, 0, "", Nothing, "ESC", "Cancel operation", &K::cancel},

      {Character, 3, 0, "", Remote, "CTL-C", "Frequency to Clipboard", &K::copyFrequency},
      {Character, 22, 0, "", Remote, "CTL-V", "Clipboard to Frequency", &K::pasteFrequency},

      {Character, 'B', 0, "M", Remote, "MB", "Best", &K::bestMode},
      {Character, 'B', 0, "F", Remote, "FB", "Best", &K::bestFilter},
      {Character, 'B', 0, "", Remote, "HHHHB", "Set BFO", &K::setBfo},
      {Character, 'F', 0, "", Remote, "HHHHF", "Set Filter", &K::setFilter},

      {Character, 'C', 0, "", Remote, "nnC", "Recall Channel nn", &K::recallChannel},
      {Character, 'S', 0, "", Remote, "nnS", "Store in channel nn", &K::storeChannel},
      {Character, '+', 0, "C", Remote, "C+", "Next Channel", &K::nextChannel},
      {Character, '-', 0, "C", Remote, "C-", "Previous Channel", &K::previousChannel},
      {Key, key::PadPlus, 0, "C", Remote, "C+", "Next Channel", &K::nextChannel},
      {Key, key::PadMinus, 0, "C", Remote, "C-", "Previous Channel", &K::previousChannel},

      {Character, '+', 0, "", Remote, "+", "Next Bandplan", &K::nextBand},
      {Character, '-', 0, "", Remote, "-", "Previous Bandplan", &K::previousBand},
      {Key, key::PadPlus, 0, "", Remote, "+", "Next Bandplan", &K::nextBand},
      {Key, key::PadMinus, 0, "", Remote, "-", "Previous Bandplan", &K::previousBand},
      {Key, key::PadPlus, key::CtrlHeld, "", Remote, "CTR+", "Next known frequency", &K::nextKnown},
      {Key, key::PadMinus, key::CtrlHeld, "", Remote, "CTR-", "Previous known frequency",
       &K::previousKnown},
      {Key, key::PadPlus, key::AltHeld, "", Remote, "ALT+", "Next in current set", &K::nextInSet},
      {Key, key::PadMinus, key::AltHeld, "", Remote, "ALT-", "Previous in current set",
       &K::previousInSet},
      {Key, key::PadPlus, kCtrlAlt, "", Remote, "CTRALT+", "Next set", &K::nextSet},
      {Key, key::PadMinus, kCtrlAlt, "", Remote, "CTRALT-", "Previous set", &K::previousSet},

      {Key, key::Right, 0, "", Remote, "Right", "Up local frequency step", &K::right},
      {Key, key::Left, 0, "", Remote, "Left", "Down local frequency step", &K::left},
      {Key, key::Up, 0, "", Remote, "Up", "Up Bandplan channel step", &K::up},
      {Key, key::Down, 0, "", Remote, "Down", "Down Bandplan channel step", &K::down},
      {Key, key::Right, key::ShiftHeld, "", Remote, "SHF Right", "Up 1Hz", &K::up1},
      {Key, key::Left, key::ShiftHeld, "", Remote, "SHF Left", "Down 1Hz", &K::down1},
      {Key, key::Up, key::ShiftHeld, "", Remote, "SHF Up", "Up 1Hz", &K::up1},
      {Key, key::Down, key::ShiftHeld, "", Remote, "SHF Down", "Down 1Hz", &K::down1},
      {Key, key::Right, key::CtrlHeld, "", Remote, "CTL Right", "Up 10Hz", &K::up10},
      {Key, key::Left, key::CtrlHeld, "", Remote, "CTL Left", "Down 10Hz", &K::down10},
      {Key, key::Up, key::CtrlHeld, "", Remote, "CTL Up", "Up 10Hz", &K::up10},
      {Key, key::Down, key::CtrlHeld, "", Remote, "CTL Down", "Down 10Hz", &K::down10},
      {Key, key::Right, key::AltHeld, "", Remote, "ALT Right", "Up 100Hz", &K::up100},
      {Key, key::Left, key::AltHeld, "", Remote, "ALT Left", "Down 100Hz", &K::down100},
      {Key, key::Up, key::AltHeld, "", Remote, "ALT Up", "Up 100Hz", &K::up100},
      {Key, key::Down, key::AltHeld, "", Remote, "ALT Down", "Down 100Hz", &K::down100},
      {Key, key::Home, 0, "", Remote, "HOME", "Nearest MHz or Known frequency", &K::home},

      {Character, 'R', 0, "", Remote, "R", "Cycle through Region", &K::nextRegion},
      {Character, 'K', 0, "", Remote, "K", "Show Known frequencies list", &K::knownList},
      {Character, 'E', 0, "", Remote, "E", "Edit/Configure Database source", &K::editDatabase},
      {Character, 'D', 0, "", Remote, "D", "Open frequency Database", &K::dataView},

      {Character, 'Y', 0, "", Panel, "Y", "Show my stations", &K::stations},
      {Character, 25, 0, "", Remote, "CTL-Y", "Take present setting into my stations",
       &K::takeStation},

      {Character, ' ', 0, "", Remote, "SPACE", "Show log data and store current setting",
       &K::logAndRecord},
      {Character, 'G', 0, "", Remote, "G", "Show log file data", &K::log},

      {Key, key::F1, 0, "", Panel, "F1", "Show this card", &K::help},
      {Key, key::F7, 0, "", Panel, "F7", "Show all receivers", &K::overview},
      {Key, key::F8, 0, "", Panel, "F8", "Show level traces", &K::traces},
      {Key, key::F6, 0, "", Panel, "F6", "Next group of controls", &K::nextGroup},
      {Key, key::F6, key::ShiftHeld, "", Panel, "SHF F6", "Previous group of controls",
       &K::previousGroup},
      {Key, key::F6, key::CtrlHeld, "", Panel, "CTL F6", "Next button of the group",
       &K::nextButton},
      {Key, key::F6, key::CtrlHeld | key::ShiftHeld, "", Panel, "CTLSHF F6",
       "Previous button of the group", &K::previousButton},
  });
  return rows;
}

}  // namespace kelvane
