#pragma once

#include <array>
#include <functional>
#include <string>
#include <string_view>
#include <utility>

#include "receiver/shown_receiver.h"
#include "settings/options.h"
#include "ui/control.h"
#include "ui/control_ids.h"

namespace kelvane {

/// What the options dialog shows, as plain values under the controls' names.
struct ConfigView {
  std::string caption = "Options";
  bool onTop = false;
  bool open = false;  ///< the dialog is on the screen
  ColourChoice colours = ColourChoice::AsSystem;
  TabRow All;  ///< the panel of the selected tab is in view, the others are not
  Control Windows, Tuned, Other;
  Control WndOTop, WndBeep, WndMonR, WndNewR, FrqSetM, FrqSetF, SndTimR, DDEOAct, DDESrvNam,
      WndPlace;
  Control cmdOK, cmdCancel;

  bool operator==(const ConfigView&) const = default;
};

/// One check box of the dialog: its control, the option that it stands for, and its texts.
struct OptionBox {
  int id;
  Control ConfigView::*box;
  bool Options::*option;
  std::string_view caption;
  std::string_view tip;
};

inline constexpr std::array<OptionBox, 8> kOptionBoxes{{
    {id::WndOTop, &ConfigView::WndOTop, &Options::OptOnTop, "Dialog always on &top",
     "If selected, dialog will alway be on top"},
    {id::WndBeep, &ConfigView::WndBeep, &Options::OptBeep, "Beep on &Errors",
     "If selected, beep occured on errors"},
    {id::FrqSetM, &ConfigView::FrqSetM, &Options::OptAutoMode, "use Auto-&Mode",
     "If selected, keep the same carrier on mode change"},
    {id::FrqSetF, &ConfigView::FrqSetF, &Options::OptAutoFilter, "use Auto-&Filter",
     "If selected, keep the same carrier on mode change"},
    {id::WndMonR, &ConfigView::WndMonR, &Options::OptMonitorChanges, "&Monitor Rx Events",
     "If selected, any receiver change will set focus to the source event receiver"},
    {id::WndNewR, &ConfigView::WndNewR, &Options::OptShowNew, "Show receivers that come &up",
     "If selected, a receiver whose link comes up is shown, unless you are at work"},
    {id::SndTimR, &ConfigView::SndTimR, &Options::OptSendTime, "Send time to receivers",
     "If selected, dialog will alway be on top"},
    {id::DDEOAct, &ConfigView::DDEOAct, &Options::OptDDELink, "Enable DDE link ",
     "If selected, will try to connect to DDE server"},
}};

/// The options dialog, and the doorway to the receiver component's own dialogs. The options are the
/// main window's; here they change with OK alone.
class Config {
 public:
  enum TabNumber : int { Drivers, Receiver, General };

  /// `instance` is the name that the component's configuration and the settings go by; without one
  /// nothing is saved.
  Config(Options& options, SettingsStore& settings, ReceiverComponent& component,
         ShownReceiver& shown, std::string instance);

  const ConfigView& view() const { return view_; }

  /// Who shows the values, and is called when they change before an operation that takes long.
  void setListener(std::function<void()> listener) { listener_ = std::move(listener); }
  /// The dialog is about to be shown: it takes the options as they are.
  void shown();
  /// The hand ticked a check box, or unticked it.
  void ticked(int control, bool on);
  /// The text of the field DDESrvNam is now this one.
  void typed(std::string text) { view_.DDESrvNam.text = std::move(text); }
  /// The text of the field WndPlace is now this one.
  void placeTyped(std::string text) { view_.WndPlace.text = std::move(text); }
  /// A set of colours was chosen, by its place in `kColourChoices`.
  void coloursChosen(int choice) { view_.colours = colourChoice(choice); }
  /// A tab was chosen. May open a dialog of the component's, and return when that is closed.
  void All_Click(int tab);
  /// Answers whether the key was one of the dialog's own.
  bool keyDown(int keyCode, int shift);
  /// Closes the dialog and takes the options over. Answers what went wrong in saving them, in
  /// words; they hold until the program ends even so.
  std::string cmdOK_Click();
  /// Tries once more to save options that could not be saved; answers whether all are.
  bool saveAgain() { return !unsaved_ || saveOptions(options_, settings_); }
  /// Closes the dialog and changes nothing.
  void cmdCancel_Click() { view_.open = false; }

 private:
  void driversEdited(const Answer<Count>& receivers);
  void nameReceiver(Index rx);

  Options& options_;
  SettingsStore& settings_;
  ReceiverComponent& component_;
  ShownReceiver& shown_;
  std::string instance_;
  ConfigView view_;
  bool unsaved_ = false;  ///< the options hold, and could not be saved
  std::function<void()> listener_;
};

}  // namespace kelvane
