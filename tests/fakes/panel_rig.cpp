#include "tests/fakes/panel_rig.h"

namespace kelvane::fakes {

PanelRig::PanelRig(const std::string& receivers) {
  if (!receivers.empty()) sondrel.configure(receivers);
  sondrel.core.OpenRxConfig("Kelvane", 0);
  ambrel.OpenFrqConfig("Kelvane");
  ambrel.InitFrqPlan(0);
}

MAin& PanelRig::start(milliseconds settle) {
  panel = std::make_unique<MAin>(PanelServices{receiver(),
                                               ambrel,
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
                                               disk});
  window.panel = panel.get();
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
    panel->tick(sondrel.clock.now);
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
  panel->clicked(control, button, true);
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
