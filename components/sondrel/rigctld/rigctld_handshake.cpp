#include "components/sondrel/rigctld/rigctld_handshake.h"

#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "components/sondrel/rigctld/rigctld_description.h"
#include "components/sondrel/rigctld/rigctld_health.h"

namespace kelvane::sondrel {

namespace {

/// "0", "1", or in the words of some servers "CHKVFO 0".
std::optional<bool> vfoArgumentIn(std::string_view line) {
  constexpr std::string_view kWord = "CHKVFO ";
  if (line.starts_with(kWord)) line.remove_prefix(kWord.size());
  if (line == "0") return false;
  if (line == "1") return true;
  return std::nullopt;
}

}  // namespace

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
    case Step::Finished:
      break;
  }
  return std::nullopt;
}

std::optional<RigItem> RigctldHandshake::asking() const {
  if (step_ == Step::Frequency) return RigItem::Frequency;
  if (step_ == Step::Mode) return RigItem::Mode;
  return std::nullopt;
}

std::optional<LinkState> RigctldHandshake::take(const Reply& reply) {
  if (!reply.ok() && stateOfError(*reply.report) == LinkState::Configuration) {
    return LinkState::Configuration;
  }
  headed_ = headed_ || reply.headed;
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
      step_ = Step::Finished;
      break;
    case Step::Finished:
      break;
  }
  return std::nullopt;
}

RigctldCommands RigctldHandshake::commands() const {
  return {found_.dialect, found_.vfoArgument, modeLines_, headed_};
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
  tidyDescription();
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
  step_ = Step::Modes;
  // The smallest servers might take a question mark for a mode to set.
  if (found_.dialect == Dialect::Minimal) takeModes({});
  return std::nullopt;
}

void RigctldHandshake::takeModes(const Reply& reply) {
  found_.modes = reply.ok() ? modesIn(reply.lines) : std::vector<std::string>{};
  if (found_.modes.empty()) found_.modes = {"AM", "FM", "USB", "LSB", "CW", "WFM"};
  if (!modeNow_.empty() && !found_.hasMode(modeNow_)) found_.modes.push_back(modeNow_);
  step_ = plain() ? Step::Finished : Step::Model;
}

/// Leaves out what a description offers without saying what there is of it.
void RigctldHandshake::tidyDescription() {
  // The small servers all tell one and the same range and abilities, whatever radio they are.
  if (plain()) {
    found_.ranges.clear();
    found_.settable = {};
    return;
  }
  if (found_.agcLevels.empty()) found_.agcLevels = {{"FAST", 2}, {"MEDIUM", 5}, {"SLOW", 3}};
  if (found_.attenuators.empty()) found_.settable.remove(RigItem::Attenuator);
  if (found_.preamps.empty()) found_.settable.remove(RigItem::Preamp);
  if (found_.mostShift == 0) found_.settable.remove(RigItem::Shift);
}

}  // namespace kelvane::sondrel
