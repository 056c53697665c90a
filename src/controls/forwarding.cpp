#include "controls/forwarding.h"

#include <algorithm>

namespace kelvane {

namespace {

constexpr Colour kActive = Colour::rgb(255, 255, 0);

void release(Control& button) {
  button.pressed = false;
  button.back = kMenuColour;
}

}  // namespace

Forwarding::Forwarding(std::array<Control, kButtons>& GenEvent, ReceiverComponent& component,
                       ShownReceiver& shown)
    : GenEvent_(GenEvent), component_(component), shown_(shown) {
  GenEvent_[Master].text = "&MST";
  GenEvent_[Master].tip = "Define as Master and forward any changes to the slave receivers";
  GenEvent_[All].text = "&FWD";
  GenEvent_[All].tip = "Forward any change made on any receiver to all other receivers";
  GenEvent_[NotUsed].text = "Not used";
  for (Control& button : GenEvent_) button.back = kMenuColour;
}

void Forwarding::click(int button) {
  if (button == Master) pressMaster();
  if (button == All) pressAll();
}

void Forwarding::tell(Long mode) {
  mode_ = mode;
  component_.SetRxForward(mode);
}

void Forwarding::pressMaster() {
  master_.fill(false);
  if (GenEvent_[Master].pressed) {
    tell(kForwardNone);
    return release(GenEvent_[Master]);
  }
  tell(shown_.index());
  GenEvent_[Master].pressed = true;
  GenEvent_[Master].back = kActive;
  release(GenEvent_[All]);
  master_[shown_.index()] = true;
}

void Forwarding::pressAll() {
  master_.fill(false);
  if (GenEvent_[All].pressed) {
    tell(kForwardNone);
    return release(GenEvent_[All]);
  }
  tell(kForwardAll);
  GenEvent_[All].pressed = true;
  GenEvent_[All].back = kActive;
  release(GenEvent_[Master]);
}

void Forwarding::receiverSelected() {
  GenEvent_[Master].back = master_[shown_.index()] ? kActive : kMenuColour;
}

void Forwarding::off() {
  master_.fill(false);
  tell(kForwardNone);
  release(GenEvent_[Master]);
  release(GenEvent_[All]);
}

void Forwarding::receiversChanged(const ReceiverMoves& moves) {
  moves.carry(master_, false);
  const auto master = std::ranges::find(master_, true);
  if (GenEvent_[All].pressed) {
    tell(kForwardAll);
  } else if (master != master_.end()) {
    tell(static_cast<Long>(master - master_.begin()));
  } else {
    off();
  }
}

void Forwarding::receivers(Count count) {
  for (Control& button : GenEvent_) button.enabled = count >= 2;
}

}  // namespace kelvane
