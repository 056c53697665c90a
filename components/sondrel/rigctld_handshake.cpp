#include "components/sondrel/rigctld_handshake.h"

#include <algorithm>

#include "base/text.h"
#include "components/sondrel/rigctld_description.h"

namespace kelvane::sondrel {

namespace {

constexpr int kWrongConfiguration = 2;
constexpr int kTimeout = 5;
constexpr int kSecurity = 19;
constexpr int kPoweredOff = 20;

bool isUnsupported(int report) {
  return report == 1 || report == 4 || report == 11 || report == 18;
}

/// "0", "1", or in the words of some servers "CHKVFO 0".
std::optional<bool> vfoArgumentIn(std::string_view line) {
  constexpr std::string_view kWord = "CHKVFO ";
  if (line.starts_with(kWord)) line.remove_prefix(kWord.size());
  if (line == "0") return false;
  if (line == "1") return true;
  return std::nullopt;
}

}  // namespace

std::optional<LinkState> stateOfError(int report) {
  switch (report) {
    case kTimeout:
    case kPoweredOff:
      return LinkState::NotResponding;
    case kWrongConfiguration:
    case kSecurity:
      return LinkState::Configuration;
    case 6:   // input or output
    case 7:   // inside the server
    case 8:   // the radio's own protocol
    case 13:  // bus
    case 14:
      return LinkState::Error;
    default:
      return std::nullopt;
  }
}

std::optional<RigCommand> RigctldHandshake::next() const {
  switch (step_) {
    case Step::VfoArgument:
      return RigctldCommands::askVfoArgument();
    case Step::Description:
      return RigctldCommands::askDescription();
    case Step::Frequency:
      return commands().get(RigItem::Frequency);
    case Step::Mode:
      return plain() ? RigctldCommands::askModeLines() : commands().get(RigItem::Mode);
    case Step::Modes:
      return commands().askModes();
    case Step::Model:
      return commands().askLongDescription();
    case Step::Probes:
      break;
  }
  if (finished()) return std::nullopt;
  return commands().get(probes_[probe_]);
}

std::optional<RigItem> RigctldHandshake::asking() const {
  if (step_ == Step::Frequency) return RigItem::Frequency;
  if (step_ == Step::Mode) return RigItem::Mode;
  if (step_ == Step::Probes && !finished()) return probes_[probe_];
  return std::nullopt;
}

std::optional<LinkState> RigctldHandshake::take(const Reply& reply) {
  if (reply.report == kSecurity || reply.report == kWrongConfiguration) {
    return LinkState::Configuration;
  }
  switch (step_) {
    case Step::VfoArgument:
      return takeVfoArgument(reply);
    case Step::Description:
      return takeDescription(reply);
    case Step::Frequency:
      return takeFrequency(reply);
    case Step::Mode:
      return takeMode(reply);
    case Step::Modes:
      takeModes(reply);
      break;
    case Step::Model:
      found_.model = modelIn(reply.lines);
      step_ = Step::Probes;
      break;
    case Step::Probes:
      takeProbe(reply);
      break;
  }
  return std::nullopt;
}

void RigctldHandshake::askAgain() {
  probes_.insert(probes_.end(), disturbed_.begin(), disturbed_.end());
  disturbed_.clear();
}

RigctldCommands RigctldHandshake::commands() const {
  return {found_.dialect, found_.vfoArgument, modeLines_};
}

std::optional<LinkState> RigctldHandshake::takeVfoArgument(const Reply& reply) {
  if (!reply.lines.empty()) {
    const auto wanted = vfoArgumentIn(reply.lines[0]);
    if (!wanted) return LinkState::BadIdentity;
    found_.vfoArgument = *wanted;
  }
  step_ = Step::Description;
  return std::nullopt;
}

std::optional<LinkState> RigctldHandshake::takeDescription(const Reply& reply) {
  if (!reply.lines.empty()) {
    auto described = readDescription(reply.lines);
    if (!described) return LinkState::BadIdentity;
    described->vfoArgument = found_.vfoArgument;
    found_ = std::move(*described);
  }
  if (model_ != 0 && found_.modelNumber != model_) return LinkState::BadIdentity;
  // The small servers all tell one and the same range and abilities, whatever radio they are.
  if (plain()) {
    found_.ranges.clear();
    found_.settable = {};
  }
  listProbes();
  step_ = Step::Frequency;
  return std::nullopt;
}

std::optional<LinkState> RigctldHandshake::takeFrequency(const Reply& reply) {
  if (!reply.ok()) {
    // In the plain dialects every error has the same number, also that of a radio that is stopped.
    if (plain()) return LinkState::NotResponding;
    if (!isUnsupported(*reply.report)) {
      return stateOfError(*reply.report).value_or(LinkState::Error);
    }
  } else if (reply.lines.empty()) {
    return LinkState::NotResponding;  // this is how a radio that is switched off answers
  } else if (!numberOf(valueOf(reply.lines[0]))) {
    return LinkState::BadIdentity;
  } else {
    found_.readable.add(RigItem::Frequency);
  }
  step_ = Step::Mode;
  return std::nullopt;
}

std::optional<LinkState> RigctldHandshake::takeMode(const Reply& reply) {
  if (!reply.ok() && !plain() && !isUnsupported(*reply.report)) {
    return stateOfError(*reply.report).value_or(LinkState::Error);
  }
  if (plain()) modeLines_ = reply.lines.size() >= 2 ? 2 : 1;
  const auto mode = readMode(reply);
  if (mode) modeNow_ = mode->mode;
  if (reply.ok()) found_.readable.add(RigItem::Mode);
  step_ = Step::Modes;
  // The smallest servers might take a question mark for a mode to set.
  if (found_.dialect == Dialect::Minimal) takeModes({});
  return std::nullopt;
}

void RigctldHandshake::takeModes(const Reply& reply) {
  found_.modes = reply.ok() ? modesIn(reply.lines) : std::vector<std::string>{};
  if (found_.modes.empty()) found_.modes = {"AM", "FM", "USB", "LSB", "CW", "WFM"};
  if (!modeNow_.empty() && !found_.hasMode(modeNow_)) found_.modes.push_back(modeNow_);
  step_ = plain() ? Step::Probes : Step::Model;
}

void RigctldHandshake::takeProbe(const Reply& reply) {
  const auto item = probes_[probe_++];
  if (readNumber(item, reply)) {
    found_.readable.add(item);
  } else if (!reply.ok() && stateOfError(*reply.report)) {
    disturbed_.push_back(item);
  } else if (item == RigItem::Strength && plain()) {
    probe_ = probes_.size();  // a plain server without this level has none
  }
}

void RigctldHandshake::listProbes() {
  if (found_.dialect == Dialect::Minimal) return;
  probes_ = {RigItem::Strength};
  if (plain()) {
    probes_.push_back(RigItem::SquelchLevel);
    return;
  }
  if (found_.agcLevels.empty()) found_.agcLevels = {{"FAST", 2}, {"MEDIUM", 5}, {"SLOW", 3}};
  if (found_.attenuators.empty()) found_.settable.remove(RigItem::Attenuator);
  if (found_.preamps.empty()) found_.settable.remove(RigItem::Preamp);
  if (found_.mostShift == 0) found_.settable.remove(RigItem::Shift);
  for (const auto item : {RigItem::Agc, RigItem::Attenuator, RigItem::Blanker, RigItem::Preamp,
                          RigItem::Pitch, RigItem::Shift, RigItem::Clock}) {
    if (found_.settable.has(item)) probes_.push_back(item);
  }
  // These two are read for their own sake, and a radio can take long to refuse them.
  probes_.push_back(RigItem::Step);
  probes_.push_back(RigItem::Squelch);
}

}  // namespace kelvane::sondrel
