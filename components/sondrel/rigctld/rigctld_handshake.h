#pragma once

#include <optional>
#include <string>

#include "components/sondrel/rigctld/rigctld_capabilities.h"
#include "components/sondrel/rigctld/rigctld_commands.h"

namespace kelvane::sondrel {

/// Finds out how a server speaks and what it says of its radio. Asks, and never changes anything.
///
/// Goes from question to question: next() is sent, its reply goes to take(). All of them must be
/// answered before the link is of use. What the radio really tells is found out by reading it.
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

  bool finished() const { return step_ == Step::Finished; }
  /// The server has answered and the radio behind it is being asked.
  bool reachedRadio() const { return step_ >= Step::Frequency; }
  /// The server heads each labelled reply with its command, so that one that comes too late can be
  /// told from the one that is waited for.
  bool headsReplies() const { return headed_; }

  const RigctldCapabilities& capabilities() const { return found_; }
  RigctldCommands commands() const;

 private:
  enum class Step { VfoArgument, Description, Frequency, Mode, Modes, Model, Finished };

  std::optional<LinkState> takeVfoArgument(const Reply& reply);
  std::optional<LinkState> takeDescription(const Reply& reply);
  std::optional<LinkState> takeFrequency(const Reply& reply);
  std::optional<LinkState> takeMode(const Reply& reply);
  void takeModes(const Reply& reply);
  void tidyDescription();
  bool plain() const { return found_.dialect != Dialect::Extended; }

  std::int32_t model_;
  Step step_ = Step::VfoArgument;
  RigctldCapabilities found_;
  std::string modeNow_;
  int modeLines_ = 2;
  bool headed_ = false;
};

}  // namespace kelvane::sondrel
