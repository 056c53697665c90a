#pragma once

#include <optional>
#include <span>
#include <string>
#include <string_view>

#include "controls/channel_step.h"
#include "controls/focus_groups.h"
#include "controls/navigation.h"
#include "controls/openers.h"
#include "controls/stepping.h"
#include "frequency/frq_entry.h"
#include "panel/receiver_tabs.h"
#include "panel/remote_state.h"
#include "ui/clipboard.h"

namespace kelvane {

class KeyCommands;

/// One command of the keyboard language. Dispatcher and tests read the same rows.
struct CommandRow {
  enum class Input {
    Key,        ///< a key code with modifiers, on key-down
    Character,  ///< a typed character, letters in upper case
  };
  enum class Needs {
    Remote,   ///< acts only under remote control, over a link that is up
    Nothing,  ///< acts always: it could otherwise never be undone
    Panel,    ///< concerns the panel alone: acts always, on a selected digit too
  };

  Input input;
  int code;                 ///< key code or character
  int shift;                ///< modifiers of a key: bits of key::Shift
  std::string_view prefix;  ///< command letter that must have come before; empty for none
  Needs needs;
  std::string_view keys;    ///< as the operator reads it
  std::string_view action;  ///< what it does, in words
  void (KeyCommands::*run)();
};

/// Every command that is not typed entry of a frequency, which the digit row takes.
std::span<const CommandRow> commandRows();

/// The panel's keyboard language: sees every key of the main window before its controls do.
class KeyCommands {
 public:
  KeyCommands(ReceiverComponent& component, FrequencyComponent& frequency, ShownReceiver& shown,
              FrqEntry& entry, clsFrqDigit& row, Stepping& stepping, Navigation& navigation,
              ChannelStep& channels, BestSetting& best, RemoteState& remote, ReceiverTabs& tabs,
              Clipboard& clipboard, Refusal& refusal, Openers& openers, FocusGroups& groups)
      : component_(component),
        frequency_(frequency),
        shown_(shown),
        entry_(entry),
        row_(row),
        stepping_(stepping),
        navigation_(navigation),
        channels_(channels),
        best_(best),
        remote_(remote),
        tabs_(tabs),
        clipboard_(clipboard),
        refusal_(refusal),
        openers_(openers),
        groups_(groups) {}

  /// A key went down in the main window; onDigit while a digit of the row has the focus. Answers
  /// whether it was taken: nobody else sees it then, nor the character that it would type.
  bool keyDown(int keyCode, int shift, bool onDigit);
  /// A character was typed. Answers whether it was taken.
  bool keyPress(int character, bool onDigit);
  /// What waits for its second key, here or at the receiver, waits no longer.
  void endPair();

  /// The command letter that waits for its second key; at most one character.
  const std::string& CommandPrefix() const { return CommandPrefix_; }

 private:
  friend std::span<const CommandRow> commandRows();

  const CommandRow* find(CommandRow::Input input, int code, int shift) const;
  bool awaitsSign(int code, int shift) const;
  bool allowed(const CommandRow& row) const;
  void receiverMayHaveChanged();
  bool takenByReceiver(int character);
  bool takenByRow(int character);
  void becomePrefix(int character);
  void tuneBy(Hz step, int direction);
  std::optional<int> typedNumber();
  void showReceiver();

  // The commands.
  void lock() { remote_.set(false); }
  void unlock() { remote_.set(true); }
  void nextReceiver();
  void cancel() {}
  void copyFrequency();
  void pasteFrequency();
  void nextRegion() { navigation_.nextRegion(); }
  void knownList() { openers_.knownList(); }
  void stations() { openers_.stations(); }
  void takeStation() { openers_.takeStation(); }
  void dataView() { openers_.dataView(); }
  void editDatabase() { openers_.editSource(); }
  void logAndRecord();
  void log();
  void help() { openers_.help(); }
  void overview() { openers_.overview(); }
  void traces() { openers_.traces(); }
  void nextGroup() { groups_.nextGroup(1); }
  void previousGroup() { groups_.nextGroup(-1); }
  void nextButton() { groups_.nextButton(1); }
  void previousButton() { groups_.nextButton(-1); }
  void bestMode() { best_.applyMode(); }
  void bestFilter() { best_.applyFilter(); }
  void setFilter();
  void setBfo();
  void recallChannel();
  void storeChannel();
  void nextChannel() { channels_.step(kNext); }
  void previousChannel() { channels_.step(kPrevious); }
  void nextBand() { navigation_.step(Walk::Bands, kNext); }
  void previousBand() { navigation_.step(Walk::Bands, kPrevious); }
  void nextKnown() { navigation_.step(Walk::Known, kNext); }
  void previousKnown() { navigation_.step(Walk::Known, kPrevious); }
  void nextInSet() { navigation_.step(Walk::InSet, kNext); }
  void previousInSet() { navigation_.step(Walk::InSet, kPrevious); }
  void nextSet() { navigation_.step(Walk::Sets, kNext); }
  void previousSet() { navigation_.step(Walk::Sets, kPrevious); }
  void up() { tuneBy(stepping_.bandStep(), 1); }
  void down() { tuneBy(stepping_.bandStep(), -1); }
  void right() { localStep(1); }
  void left() { localStep(-1); }
  void up1() { tuneBy(1, 1); }
  void down1() { tuneBy(1, -1); }
  void up10() { tuneBy(10, 1); }
  void down10() { tuneBy(10, -1); }
  void up100() { tuneBy(100, 1); }
  void down100() { tuneBy(100, -1); }
  void localStep(int direction);
  void home();

  ReceiverComponent& component_;
  FrequencyComponent& frequency_;
  ShownReceiver& shown_;
  FrqEntry& entry_;
  clsFrqDigit& row_;
  Stepping& stepping_;
  Navigation& navigation_;
  ChannelStep& channels_;
  BestSetting& best_;
  RemoteState& remote_;
  ReceiverTabs& tabs_;
  Clipboard& clipboard_;
  Refusal& refusal_;
  Openers& openers_;
  FocusGroups& groups_;
  std::string CommandPrefix_;
  Index keysFor_ = -1;        ///< the receiver that the last key was for
  bool keepsPrefix_ = false;  ///< the command that runs leaves a prefix behind
};

}  // namespace kelvane
