#include "receiver/status_box.h"

#include "contract/link_state.h"

namespace kelvane {

namespace {

constexpr Colour kOrange = Colour::rgb(255, 192, 128);
constexpr std::string_view kNotConnected = "Not connected";

}  // namespace

LinkWords linkWords(Long code) {
  switch (static_cast<LinkState>(code)) {
    case LinkState::BadAddress:
    case LinkState::Configuration:
    case LinkState::BadIdentity:
    case LinkState::BadReceiverAddress:
    case LinkState::BuiltInTestError:
      return {linkFaultWords(code), kRed};
    default:
      return {linkFaultWords(code), kOrange};
  }
}

StatusBox::StatusBox(Control& RxMask, Control& RxWhy) : RxMask_(RxMask), RxWhy_(RxWhy) {
  RxMask_.text = words_ = kNotConnected;
  RxMask_.fore = kOrange;
  RxMask_.back = kBlack;
  RxWhy_.fore = kOrange;
  RxWhy_.back = kBlack;
}

void StatusBox::reported(Index rx, Long code) {
  if (rx >= 0 && rx < kMostReceivers) lastCode_[rx] = code;
}

void StatusBox::receiversChanged(const ReceiverMoves& moves) {
  moves.carry(lastCode_, std::optional<Long>());
}

LinkWords StatusBox::wordsOf(Index rx) const {
  const auto code = rx >= 0 && rx < kMostReceivers ? lastCode_[rx] : std::nullopt;
  // A link that was up and is not asked for any more has no words of its own.
  const bool nothing = !code || *code == static_cast<Long>(LinkState::Up);
  return nothing ? LinkWords{kNotConnected, kOrange} : linkWords(*code);
}

void StatusBox::show(Index rx, bool online) {
  RxMask_.visible = RxWhy_.visible = !online;
  RxWhy_.text.clear();
  RxWhy_.tip.clear();
  const LinkWords words = wordsOf(rx);
  RxMask_.text = words_ = words.text;
  RxMask_.fore = words.colour;
}

void StatusBox::blink(bool online, const std::string& held, const std::string& why) {
  if (online) return;
  RxMask_.visible = !RxMask_.visible;
  RxWhy_.text = RxWhy_.tip = why;
  if (!RxMask_.visible) return;
  RxMask_.text = held.empty() || RxMask_.text != words_ ? words_ : held;
}

}  // namespace kelvane
