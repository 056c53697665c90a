#pragma once

#include <optional>
#include <vector>

#include "components/sondrel/rigctld_capabilities.h"
#include "components/sondrel/rigctld_commands.h"

namespace kelvane::sondrel {

/// What the link's state is after an error that a server reported; none where the error says
/// nothing of the link, only that this command, or this value, cannot be had.
std::optional<LinkState> stateOfError(int report);

/// Finds out how a server speaks and what its radio can do. Asks, and never changes anything.
///
/// Goes from question to question: next() is sent, its reply goes to take(). The first questions
/// must be answered before the link is of use; the radio's single abilities are asked for after,
/// each once, because a radio can take seconds to refuse.
class RigctldHandshake {
 public:
  /// With a model number other than 0 no other model is accepted.
  explicit RigctldHandshake(std::int32_t model) : model_(model) {}

  /// The question to send; none when everything has been asked.
  std::optional<RigCommand> next() const;
  /// The item that the present question reads; none where it reads no value.
  std::optional<RigItem> asking() const;
  /// Takes the reply to the present question. Answers nothing when the handshake goes on, else the
  /// link's state: after BadIdentity and Configuration the connection is of no use, after another
  /// state the same question can be asked again later.
  std::optional<LinkState> take(const Reply& reply);

  /// The radio answers, and its frequency and mode are known.
  bool usable() const { return step_ >= Step::Probes; }
  bool finished() const { return usable() && probe_ >= probes_.size(); }
  /// The server has answered and the radio behind it is being asked.
  bool reachedRadio() const { return step_ >= Step::Frequency; }
  /// Asks again for the abilities that a disturbed radio did not tell.
  void askAgain();

  const RigctldCapabilities& capabilities() const { return found_; }
  RigctldCommands commands() const;

 private:
  enum class Step { VfoArgument, Description, Frequency, Mode, Modes, Model, Probes };

  std::optional<LinkState> takeVfoArgument(const Reply& reply);
  std::optional<LinkState> takeDescription(const Reply& reply);
  std::optional<LinkState> takeFrequency(const Reply& reply);
  std::optional<LinkState> takeMode(const Reply& reply);
  void takeModes(const Reply& reply);
  void takeProbe(const Reply& reply);
  void listProbes();
  bool plain() const { return found_.dialect != Dialect::Extended; }

  std::int32_t model_;
  Step step_ = Step::VfoArgument;
  RigctldCapabilities found_;
  std::string modeNow_;
  int modeLines_ = 2;
  std::vector<RigItem> probes_;
  std::size_t probe_ = 0;
  std::vector<RigItem> disturbed_;
};

}  // namespace kelvane::sondrel
