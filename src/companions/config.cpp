#include "companions/config.h"

#include <utility>

#include "base/text.h"
#include "ui/key_codes.h"

namespace kelvane {

namespace {

/// A caption that shows the text as it stands: "&" marks the key of the character after it.
std::string captionOf(const std::string& text) {
  std::string caption;
  for (const char c : text) caption.append(c == '&' ? 2 : 1, c);
  return caption;
}

}  // namespace

Config::Config(Options& options, SettingsStore& settings, ReceiverComponent& component,
               ShownReceiver& shown, std::string instance)
    : options_(options),
      settings_(settings),
      component_(component),
      shown_(shown),
      instance_(std::move(instance)) {
  view_.All.tabs = {{"&Drivers", "Configure receivers drivers"},
                    {"&Receiver", "Configure current receivers settings"},
                    {"&General", "Set Commons options"}};
  view_.Windows.text = "&Windows";
  view_.Tuned.text = "when &Manually tuned";
  view_.Other.text = "&Other";
  for (const OptionBox& row : kOptionBoxes) {
    (view_.*row.box).text = row.caption;
    (view_.*row.box).tip = row.tip;
  }
  view_.WndPlace.tip = "Your locator (JO21SX) or degrees (52.1, 5.2): for distance and bearing";
  view_.DDESrvNam.tip =
      "DDE Server basename. Receiver name will be added to it together with a '_' separator";
  view_.cmdOK.text = "OK";
  view_.cmdCancel.text = "&Cancel";
}

void Config::shown() {
  for (const OptionBox& row : kOptionBoxes) (view_.*row.box).pressed = options_.*row.option;
  view_.DDESrvNam.text = options_.OptDDEName;
  view_.WndPlace.text = options_.OptPlace;
  view_.onTop = options_.OptOnTop;
  view_.colours = options_.OptColours;
  view_.All.selected = General;
  view_.open = true;
  nameReceiver(shown_.index());
}

void Config::nameReceiver(Index rx) {
  view_.All.tabs[Receiver].caption = captionOf(component_.GetRxName(rx));
}

void Config::ticked(int control, bool on) {
  for (const OptionBox& row : kOptionBoxes) {
    if (row.id == control) (view_.*row.box).pressed = on;
  }
}

void Config::All_Click(int tab) {
  if (tab < Drivers || tab > General) return;
  view_.All.selected = tab;
  if (listener_) listener_();
  if (tab == Drivers) {
    driversEdited(component_.OpenRxConfig(instance_, 1));
    view_.All.selected = General;
  } else if (tab == Receiver && !view_.All.tabs[Receiver].caption.empty()) {
    component_.ShowRxSettings(shown_.index());
    view_.All.selected = General;
  }
}

void Config::driversEdited(const Answer<Count>& receivers) {
  if (!receivers.ok()) return;
  if (receivers == 0) {
    view_.All.tabs[Receiver].caption.clear();
  } else {
    nameReceiver(shown_.index() < receivers ? shown_.index() : Index{0});
  }
}

bool Config::keyDown(int keyCode, int shift) {
  if (keyCode != key::Tab || shift != key::CtrlHeld) return false;
  All_Click((view_.All.selected + 1) % static_cast<int>(view_.All.tabs.size()));
  return true;
}

std::string Config::cmdOK_Click() {
  Options chosen = options_;
  for (const OptionBox& row : kOptionBoxes) chosen.*row.option = (view_.*row.box).pressed;
  chosen.OptDDEName = trimmed(view_.DDESrvNam.text);
  chosen.OptPlace = trimmed(view_.WndPlace.text);
  chosen.OptColours = view_.colours;
  view_.open = false;
  // What another program stored meanwhile stays, where the operator did not choose otherwise.
  const bool joins = !instance_.empty() && !unsaved_;
  options_ = joins ? joinOptions(options_, chosen, loadOptions(settings_)) : chosen;
  unsaved_ = !instance_.empty() && !saveOptions(options_, settings_);
  if (!unsaved_) return {};
  return "The options could not be saved. They hold until the program ends.";
}

}  // namespace kelvane
