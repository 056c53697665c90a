#include "tests/fakes/panel_rig.h"

#include "ui/main_controls.h"

namespace kelvane::fakes {

/// A control as it is on the screen; null for the tabs, which always take keys, and for nobody.
const Control* FakeWindow::onScreen(int control) {
  for (const ControlRow& row : mainControls()) {
    if (control >= row.id && control < row.id + row.count)
      return &row.of(screen_, control - row.id);
  }
  return nullptr;
}

void FakeWindow::focus(int control) {
  const Control* target = onScreen(control);
  if (!panel || control == focused || (target && !(target->visible && target->enabled))) return;
  active_ = true;
  loseFocus();
  focused = control;
  panel->gotFocus(control);
}

void FakeWindow::loseFocus() {
  const int left = std::exchange(focused, kNobody);
  if (left != kNobody) panel->lostFocus(left);
}

void FakeWindow::show() {
  panel->settleFocus();
  screen_ = panel->view();
  const Control* holder = onScreen(focused);
  if (!holder || (holder->visible && holder->enabled)) return;
  loseFocus();
  if (!holder->visible) panel->activated();
}

void FakeWindow::leave() {
  active_ = false;
  loseFocus();
}

void FakeWindow::comeBack() {
  active_ = true;
  panel->activated();
}

PanelRig::PanelRig(const std::string& receivers) {
  if (!receivers.empty()) sondrel.configure(receivers);
  sondrel.core.OpenRxConfig("Kelvane", 0);
  ambrel.OpenFrqConfig("Kelvane");
  ambrel.InitFrqPlan(0);
}

MAin& PanelRig::start(milliseconds settle) {
  panel = std::make_unique<MAin>(PanelServices{receiver(),
                                               *plan,
                                               settings,
                                               window,
                                               dialogs,
                                               clipboard,
                                               digitServers,
                                               [this] { return sondrel.clock.now; },
                                               "Kelvane",
                                               files,
                                               calendar,
                                               sondrel.folder.path(),
                                               fileDialogs,
                                               folder(),
                                               {},
                                               disk,
                                               [this] { return wallTime(); },
                                               [this](bool keep) { keptAwake = keep; }});
  window.panel = panel.get();
  window.show();
  window.pending = [this] { sondrel.pump(); };
  sondrel.core.addListener(panel->receiverEvents());
  ambrel.addListener(panel->frequencyEvents());
  run(settle);
  return *panel;
}

PanelRig::~PanelRig() {
  if (!panel) return;
  sondrel.core.removeListener(panel->receiverEvents());
  ambrel.removeListener(panel->frequencyEvents());
}

void PanelRig::run(milliseconds time) {
  const Instant end = sondrel.clock.now + time;
  for (;;) {
    const Instant due = std::min(sondrel.core.nextDue(), panel->nextDue());
    sondrel.clock.now = std::min(std::max(due, sondrel.clock.now), end);
    sondrel.pump();
    ambrel.deliverEvents();
    panel->workEnded();
    panel->tick(sondrel.clock.now);
    window.show();
    if (sondrel.clock.now >= end && std::min(sondrel.core.nextDue(), panel->nextDue()) > end)
      return;
  }
}

void PanelRig::type(std::string_view characters) {
  for (const char c : characters) {
    const int character = static_cast<unsigned char>(c);
    if (!panel->previewKeyPress(character, window.focused))
      panel->keyPress(window.focused, character);
    run(milliseconds(20));
  }
}

void PanelRig::press(int keyCode, int shift) {
  if (!panel->previewKeyDown(keyCode, shift, window.focused))
    panel->keyDown(window.focused, keyCode, shift);
  run(milliseconds(20));
}

void PanelRig::click(int control, MouseButton button) {
  panel->clicked(control, button);
  run(milliseconds(50));
}

void PanelRig::turnKnob(Index rx, Hz frequency) {
  sondrel.core.turnKnob(rx, sondrel::Item::Frequency, frequency);
  run(milliseconds(20));
}

std::string PanelRig::digits() const {
  std::string text;
  for (const Control& digit : panel->view().FrqDigit) text += digit.visible ? digit.text : " ";
  return text;
}

void PanelRig::finishWriting() {
  panel->finishWriting();
  run(milliseconds(50));
}

}  // namespace kelvane::fakes
