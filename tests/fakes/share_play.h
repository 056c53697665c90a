#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "components/sondrel/sharing/share_session.h"
#include "components/sondrel/standard_modes.h"
#include "contract/modes.h"

namespace kelvane::fakes {

/// One program at a shared receiver that is on 7 100 000 Hz, USB 2400, without a socket between.
class SharePlay {
 public:
  SharePlay() {
    traits.name = "Attic";
    traits.permission = sondrel::SharePermission::Tune;
    traits.can.minimum = 10'000;
    traits.can.maximum = 30'000'000;
    for (const Mode mode : {Mode::Am, Mode::Usb, Mode::Lsb, Mode::Cw}) {
      traits.can.modes.push_back(sondrel::standardMode(static_cast<Setting>(mode)));
    }
    traits.can.agc = {{0, "slow", 2000}, {1, "medium", 500}, {2, "fast", 100}};
    traits.can.blanker = {{0, "off", 0}, {1, "low", 30}, {2, "high", 70}};
    traits.can.attenuator = {{0, "off", 0}, {1, "10 dB", 10}, {2, "20 dB", 20}};
    facts.online = true;
    facts.frequency = 7'100'000;
    facts.mode = static_cast<Setting>(Mode::Usb);
    facts.filter = 2400;
    facts.agc = 2;
    facts.blanker = 0;
    facts.attenuator = 1;
    facts.level = -92;
    facts.squelchOpen = true;
    publish();
  }

  void publish() {
    facts.traits = std::make_shared<const sondrel::SharedTraits>(traits);
    receiver.publish(facts);
  }
  /// What is answered to these bytes.
  std::string say(std::string_view bytes) {
    session.received(bytes);
    std::string all;
    for (std::string part; !(part = session.answer(now)).empty();) all += part;
    return all;
  }
  std::vector<sondrel::ShareOrder> orders() { return receiver.takeOrders(); }

  sondrel::SharedTraits traits;
  sondrel::SharedFacts facts;
  sondrel::SharedReceiver receiver;
  int wakes = 0;
  Instant now = Instant{} + milliseconds(1'000'000);
  sondrel::ShareSession session{receiver, "127.0.0.1:50000", [this] { ++wakes; }};
};

}  // namespace kelvane::fakes
