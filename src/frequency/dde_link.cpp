#include "frequency/dde_link.h"

#include <utility>
#include <vector>

namespace kelvane {

namespace {

constexpr Colour kLinked = Colour::rgb(0x80, 0x80, 0x80);
constexpr Colour kWaiting = Colour::rgb(255, 216, 96);
constexpr Colour kFailed = Colour::rgb(255, 128, 112);

struct LinkLook {
  Colour back;
  const char* text;  ///< the colour is not the only sign
  std::string words;
};

LinkLook lookOf(DigitLink state, const std::string& server) {
  switch (state) {
    case DigitLink::Waiting:
      return {kWaiting, "DDE ?", "Waiting for the DDE server " + server + ", topic DTMF"};
    case DigitLink::Linked:
      return {kLinked, "DDE +", "Linked with the DDE server " + server};
    case DigitLink::Failed:
      return {kFailed, "DDE !",
              "The DDE server " + server + " does not answer, or has no item Digit"};
    default:
      return {kButtonFace, "DDE", "The DDE link is closed"};
  }
}

}  // namespace

DdeLink::DdeLink(Control& DDESts, DigitServers& servers, ReceiverComponent& component,
                 ShownReceiver& shown, const Options& options, WindowCommands& window)
    : DDESts_(DDESts),
      servers_(servers),
      component_(component),
      shown_(shown),
      options_(options),
      window_(window),
      digits_(component) {
  servers_.setListener([this](Index rx, const std::string& text) { received(rx, text); });
  show();
}

std::string DdeLink::serverOf(Index rx) const {
  return options_.OptDDEName + "_" + component_.GetRxName(rx).value();
}

void DdeLink::apply() {
  std::vector<std::string> servers;
  const Count receivers = options_.OptDDELink ? receiverCount(component_) : 0;
  for (Index rx = 0; rx < receivers; ++rx) servers.push_back(serverOf(rx));
  servers_.link(servers);
  show();
}

void DdeLink::receiversChanged(const ReceiverMoves& moves) {
  digits_.receiversChanged(moves);
  apply();
}

void DdeLink::receiverSelected() {
  if (options_.OptDDELink) servers_.refresh();
  show();
}

void DdeLink::blink() {
  if (options_.OptDDELink && ++ticks_ == 2) {
    ticks_ = 0;
    servers_.refresh();
  }
  show();
}

void DdeLink::received(Index rx, const std::string& text) {
  if (digits_.Digits_Change(rx, text)) window_.runPending();
}

void DdeLink::show() {
  LinkLook look = lookOf(DigitLink::Closed, {});
  if (shown_.exists()) look = lookOf(servers_.state(shown_.index()), serverOf(shown_.index()));
  DDESts_.back = look.back;
  DDESts_.text = look.text;
  DDESts_.tip = std::move(look.words);
}

}  // namespace kelvane
