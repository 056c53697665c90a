#include "shell/main_window.h"

#include <algorithm>

#include "ui/control_ids.h"

namespace kelvane {

namespace {

constexpr Colour kLamp = Colour::rgb(255, 192, 128);
constexpr Colour kGreen = Colour::rgb(96, 220, 120);
constexpr Colour kPanelText = Colour::rgb(200, 208, 216);
constexpr std::array<const char*, 9> kDigitTips = {
    "Click to set MHz Value",    "Click to set MHz Value",   "Click to set MHz Value",
    "Click to set 100KHz Value", "Click to set 10KHz Value", "Click to set KHz Value",
    "Click to set 100Hz Value",  "Click to set 10Hz Value",  "Click to set Hz Value"};

bool within(int control, int first, std::size_t count) {
  return control >= first && control < first + static_cast<int>(count);
}

/// The colours, tool tips and captions that never change afterwards.
MainView firstView() {
  MainView view;
  for (std::size_t i = 0; i < view.FrqDigit.size(); ++i) view.FrqDigit[i].tip = kDigitTips[i];
  view.FrqFrame.back = kBlack;
  view.FrqBfo.tip = "BFO/Tone. Click Left/Right to Increase/Decrease.";
  view.LockImg[0].tip = "Click to disable remote control";
  view.LockImg[0].fore = kGreen;
  view.LockImg[1].tip = "Click to enable remote control";
  view.LockImg[1].fore = kLamp;
  for (Control& picture : view.LockImg) picture.back = kBlack;
  view.RNG.tip = "Select region";
  view.RNG.back = kBlack;
  view.RNG.fore = kPanelText;
  return view;
}

}  // namespace

MAin::MAin(const PanelServices& services)
    : services_(services),
      options_(loadOptions(services.settings)),
      view_(firstView()),
      shown_(services.receiver),
      row_({view_.FrqFrame, view_.FrqDotit, view_.FrqFocus, view_.FrqDigit, view_.FrqBfo},
           services.window),
      entry_(row_, services.receiver, shown_),
      remote_(view_, entry_, services.receiver, shown_, services.window),
      status_(view_.RxMask),
      retry_(services.receiver),
      tabs_(view_, services.receiver, shown_, entry_, row_, remote_, status_, services.window),
      events_(services.receiver, shown_, options_, tabs_, retry_, status_, entry_, row_, remote_,
              services.now) {
  view_.onTop = options_.OptOnTop;
  view_.RNG.text = std::to_string(services.frequency.GetFrqRegion() + 1) + "R";
  row_.Boundary(999'999'999, 0, 1);
  row_.Value(-1);
  tabs_.build();
  const Instant now = services.now();
  retry_.start(services.receiver.GetRxCount(), now);
  TimBlk_.start(kBlink, now);
}

Placement MAin::startPlace() const {
  return {services_.settings.number("MainLeft", 1000), services_.settings.number("MainTop", 1000),
          0, 0};
}

void MAin::gotFocus(int control) {
  if (control == id::FrqFocus) return entry_.FrqFocus_GotFocus();
  if (within(control, id::FrqDigit, view_.FrqDigit.size()))
    entry_.FrqDigit_GotFocus(control - id::FrqDigit);
}

void MAin::lostFocus(int control) {
  if (within(control, id::FrqDigit, view_.FrqDigit.size()))
    entry_.FrqDigit_LostFocus(control - id::FrqDigit);
}

void MAin::keyDown(int control, int keyCode, int shift) {
  if (within(control, id::FrqDigit, view_.FrqDigit.size()))
    entry_.FrqDigit_KeyDown(control - id::FrqDigit, keyCode, shift);
  tabs_.serveRequest();
}

void MAin::keyPress(int control, int character) {
  if (within(control, id::FrqDigit, view_.FrqDigit.size()))
    entry_.FrqDigit_KeyPress(control - id::FrqDigit, character);
  else if (control == id::FrqFocus)
    entry_.FrqFocus_KeyPress(character);
  tabs_.serveRequest();
}

void MAin::clicked(int control, MouseButton, bool) {
  if (within(control, id::LockImg, view_.LockImg.size())) remote_.toggle();
}

void MAin::tabClicked(int tab) { tabs_.click(tab); }

void MAin::tick(Instant now) {
  if (retry_.tick(now)) services_.window.runPending();
  if (TimBlk_.fired(now)) {
    status_.blink(shown_.online());
    tabs_.highlightAll();
  }
  tabs_.serveRequest();
}

Instant MAin::nextDue() const { return std::min(retry_.timer().due(), TimBlk_.due()); }

void MAin::unload(const Placement& place) {
  const Count receivers = services_.receiver.GetRxCount();
  for (Index rx = 0; rx < receivers; ++rx) {
    services_.receiver.SetRxConnect(rx, false);
    services_.window.runPending();
  }
  services_.settings.writeNumber("MainLeft", place.left);
  services_.settings.writeNumber("MainTop", place.top);
  services_.settings.writeNumber("MainWidth", place.width);
  services_.settings.writeNumber("MainHeight", place.height);
}

}  // namespace kelvane
