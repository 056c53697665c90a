#pragma once

#include <array>
#include <cstdint>
#include <memory>
#include <span>
#include <string>
#include <string_view>

#include "tests/fakes/noting_receivers.h"
#include "tests/fakes/panel_rig.h"
#include "ui/key_codes.h"

namespace kelvane::fakes {

/// Plays any bytes as keys, clicks, wheel turns and a hand at the receiver on the whole panel, and
/// watches the promises that the keyboard language keeps whatever is done to it.
class PanelPlay {
 public:
  PanelPlay() {
    // Nobody is to remember what millions of keys bring about.
    rig_.sondrel.core.removeListener(rig_.sondrel.listener);
    auto noting = std::make_unique<NotingReceivers>(rig_.sondrel.core);
    noting_ = noting.get();
    rig_.wrapped = std::move(noting);
    rig_.start();
  }

  /// What went wrong, in words; empty when nothing did.
  std::string play(std::span<const std::uint8_t> bytes) {
    for (std::size_t i = 0; i + 1 < bytes.size(); i += 2) {
      noting_->asked.clear();
      bounded_ = false;
      act(bytes[i] % 16, bytes[i + 1]);
      passTime();
      const std::string wrong = complaint();
      if (!wrong.empty()) return wrong + " after byte " + std::to_string(i);
    }
    return {};
  }

 private:
  void act(int what, std::uint8_t with) {
    constexpr std::array keys{key::Up,     key::Down,     key::Left,   key::Right,
                              key::Home,   key::PadPlus,  key::F6,     key::PadMinus,
                              key::PageUp, key::PageDown, key::Delete, key::F1};
    constexpr std::array clicks{id::LockImg,  id::VChn, id::RNG,      id::FAlt, id::BMod,
                                id::ModEvent, id::FDif, id::GenEvent, id::Band, id::Opener};
    switch (what) {
      default:
        return typeOne(with);
      case 8:
      case 9:
      case 10:
        return press(keys[with % keys.size()], with / keys.size() % 8);
      case 11:
        return rig_.window.focus(id::FrqDigit + with % 9);
      case 12:
        return rig_.panel->clicked(clicks[with % clicks.size()], MouseButton::Left);
      case 13:
        return rig_.panel->wheel((with % 8 - 4) * 40);
      case 14:
        rig_.clipboard.held = std::to_string(with) + (with % 3 ? "000" : "e9");
        return;
      case 15:
        return with % 4 ? turnKnob(with % 4, with * 100'000) : rig_.panel->tabClicked(with % 5);
    }
  }

  /// Keys come as from a full queue: time passes, and the screen is painted, after some of them.
  void passTime() {
    constexpr int kAtOnce = 32;
    if (++acts_ % kAtOnce == 0) rig_.run(milliseconds(20));
  }

  void press(int keyCode, int shift) {
    if (!rig_.panel->previewKeyDown(keyCode, shift, rig_.window.focused))
      rig_.panel->keyDown(rig_.window.focused, keyCode, shift);
  }

  void turnKnob(Index rx, Hz frequency) {
    rig_.sondrel.core.turnKnob(rx, sondrel::Item::Frequency, frequency);
  }

  void typeOne(std::uint8_t with) {
    constexpr std::string_view typed =
        "0123456789.,:+-\r\x08\x1b\tmMuUfFbBcCsSdDlLrRkKeEpPaAgG \x03\x16";
    const char c = typed[with % typed.size()];
    bounded_ = c == '\r' || c == '\x16';
    const int character = static_cast<unsigned char>(c);
    if (!rig_.panel->previewKeyPress(character, rig_.window.focused))
      rig_.panel->keyPress(rig_.window.focused, character);
  }

  std::string complaint() {
    for (const auto& [rx, frequency] : noting_->asked) {
      sondrel::SondrelCore& core = rig_.sondrel.core;
      if (bounded_ &&
          (frequency < core.GetRxFrqMin(rx).value() || frequency > core.GetRxFrqMax(rx).value()))
        return "an entry asks for " + std::to_string(frequency);
    }
    for (const Control& digit : rig_.panel->view().FrqDigit) {
      if (digit.text.size() != 1) return "a digit shows \"" + digit.text + "\"";
    }
    if (rig_.panel->CommandPrefix().size() > 1) return "the prefix grows";
    if (noting_->asked.size() > 1) return "one key asks for several frequencies";
    return {};
  }

  PanelRig rig_;
  NotingReceivers* noting_ = nullptr;
  unsigned acts_ = 0;
  bool bounded_ = false;  ///< what is asked for now has to lie within the receiver's range
};

}  // namespace kelvane::fakes
