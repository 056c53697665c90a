#include "controls/openers.h"

#include <optional>

#include "ui/control_ids.h"

namespace kelvane {

/// One button. Its key is named in the tool tip, which is where operators learn it.
struct Openers::Button {
  std::string_view caption;
  std::string_view spoken;  ///< where it says more than the caption
  std::string_view tip;
  std::optional<Companion> window;  ///< none for a window of a component's
  bool needsRemote;
  void (Openers::*open)();
};

const std::array<Openers::Button, Openers::kButtons>& Openers::buttons() {
  static constexpr std::array<Button, kButtons> all{{
      {"Cha&nnels", "", "Show the receiver's channels (S)", Companion::Channels, true,
       &Openers::channels},
      {"L&og", "", "Show the station log (G; SPACE records the present setting as well)",
       Companion::Log, true, &Openers::log},
      {"&Known", "", "Show the list of known frequencies (K)", {}, true, &Openers::knownList},
      {"&Data", "", "Show the frequency database (D)", {}, true, &Openers::dataView},
      {"&Source",
       "",
       "Edit or configure the database's source (E)",
       {},
       true,
       &Openers::editSource},
      {"Hel&p", "", "Show the card of keyboard commands (F1)", Companion::Help, false,
       &Openers::help},
      {"All", "All receivers", "Show all receivers at once (F7)", Companion::Overview, false,
       &Openers::overview},
      {"Levels", "Level traces", "Show the receivers' levels over each other (F8)",
       Companion::Traces, false, &Openers::traces},
  }};
  return all;
}

Openers::Openers(std::array<Control, kButtons>& Opener, ReceiverComponent& receiver,
                 FrequencyComponent& frequency, ShownReceiver& shown, Companions& windows,
                 WindowCommands& window)
    : Opener_(Opener),
      receiver_(receiver),
      frequency_(frequency),
      shown_(shown),
      windows_(windows),
      window_(window) {
  for (int i = 0; i < kButtons; ++i) {
    Opener_[i].text = buttons()[i].caption;
    Opener_[i].spoken = buttons()[i].spoken;
    Opener_[i].tip = buttons()[i].tip;
    Opener_[i].back = kMenuColour;
  }
}

bool Openers::usable(const Button& button) const {
  if (button.needsRemote && !shown_.remote()) return false;
  return button.window != Companion::Channels || receiver_.GetRxChnCount(shown_.index()) != 0;
}

void Openers::refresh() {
  for (int i = 0; i < kButtons; ++i) {
    const Button& button = buttons()[i];
    Opener_[i].visible = !button.window || windows_.has(*button.window);
    Opener_[i].enabled = usable(button);
  }
}

void Openers::click(int button) {
  if (usable(buttons()[button])) (this->*buttons()[button].open)();
}

void Openers::channels() {
  if (receiver_.GetRxChnCount(shown_.index()) != 0) windows_.open(Companion::Channels);
}

void Openers::dataView() {
  frequency_.DataView();
  window_.focus(id::FrqFocus);
}

}  // namespace kelvane
