#pragma once

#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "components/sondrel/rigctld/lasting_failures.h"
#include "components/sondrel/rigctld/rigctld_experience.h"
#include "components/sondrel/rigctld/rigctld_handshake.h"
#include "components/sondrel/rigctld/rigctld_health.h"
#include "components/sondrel/rigctld/rigctld_orders.h"
#include "components/sondrel/rigctld/rigctld_poll_plan.h"
#include "components/sondrel/rigctld/rigctld_readings.h"

namespace kelvane::sondrel {

struct RigctldOptions {
  std::int32_t model = 0;   ///< the only model number that is accepted; 0 for any
  std::int32_t lowest = 0;  ///< own limits of the tuning, Hz; both 0: what the server tells
  std::int32_t highest = 0;
  std::int32_t bfoLimit = 5000;  ///< most tuning offset that stands for a BFO, Hz
  PollRates rates;
};

/// One radio's link: speaks with a server, knows what the radio does, and carries out what the
/// operator wants. Knows no socket, no thread and no clock: it is fed bytes and time, and tells
/// what to send and what it found.
///
/// After every call, act on connectionWanted(), send takeOutput() and deliver takeReports(); call
/// tick() when nextDue() has come.
///
/// At most one command is under way at any time: servers answer each by a packet of its own, and
/// together with delayed acknowledgements that makes a row of commands many times slower. One that
/// is not answered for half a minute is given up; its answer may still come.
class RigctldSession {
 public:
  explicit RigctldSession(RigctldOptions options);

  // The operator's side.

  /// Opens the link, or tries again; ends in a LinkReport. Where the server is only slow the
  /// connection stays: a new one would wait for the same radio. Where the last attempts were
  /// hopeless the next one waits. `reopen`: also where it is up.
  void open(bool reopen, Instant now);
  /// The server may be there again: tries at once where the link was lost.
  void tryAgain();
  /// Closes it; nothing is reported.
  void close();
  /// Ends in a ValueReport with the request's ticket. Forgotten without a word when a newer request
  /// takes its place, and when the link is not up, or stops being so before it was sent.
  void request(RigRequest request, Instant now);
  /// The operator looks at this receiver.
  void setShown(bool shown);

  // The connection's side.

  /// 0 when no connection is wanted; another number than before asks for a new one.
  std::uint32_t connectionWanted() const { return wanted_; }
  void connected(Instant now);
  void received(std::string_view bytes, Instant now);
  /// The attempt failed, or the connection ended by itself.
  void closed(CloseReason reason, Instant now);
  void tick(Instant now);
  Instant nextDue() const;
  /// What has to be sent; empty, or one whole line.
  std::string takeOutput();
  std::vector<RigReport> takeReports();

 private:
  enum class Phase { Closed, Connecting, Greeting, Running };
  enum class Purpose { Greet, Read, Order };
  struct AwaitedReply {
    Purpose purpose = Purpose::Read;
    RigItem item = RigItem::Frequency;  ///< for Read
    RigOrder order;                     ///< for Order
    Instant sent;
    Instant limit;  ///< when the silence is put into words
    bool late = false;
  };

  void startConnection();
  void drop();
  void fail(LinkState state, Instant now);
  void failLater(LinkState state, Instant now);
  void say(LinkState state);

  void waitForQuiet(Instant now);
  milliseconds replyLimitOf(const AwaitedReply& awaited) const;
  void overdue(Instant now);
  void giveUp(Instant now);
  void noReply(Instant now);
  bool slept(Instant now) const;
  void replied(const Reply& reply, Instant now);
  void greeted(const Reply& reply, Instant now);
  bool readyToComeUp(Instant now) const;
  void comeUp(Instant now);
  void gotReading(const AwaitedReply& awaited, const Reply& reply, Instant now);
  void judge(const Reply& reply, bool good, milliseconds took, Instant now);
  void gotOrder(const RigOrder& order, const Reply& reply, Instant now);
  void learned(Instant now);
  void holdSettings(const AwaitedReply& awaited, Instant now);
  void askHeartbeat();

  void pump(Instant now);
  void pumpGreeting(Instant now);
  bool sendRequest(Instant now);
  void send(RigCommand command, AwaitedReply awaited, Instant now);
  void read(RigItem item, Instant now);
  void collect();
  RigctldCapabilities limited() const;

  RigctldOptions options_;
  Phase phase_ = Phase::Closed;
  std::uint32_t wanted_ = 0;
  std::uint32_t connections_ = 0;
  std::optional<LinkState> toldState_;
  bool stateAskedFor_ = false;
  bool stateAssumed_ = false;  ///< toldState_ stands only because nothing was answered
  bool radioSilent_ = false;   ///< the server said so
  bool left_ = false;          ///< the connection before this one was ended from this side

  ReplyReader reader_;
  std::optional<AwaitedReply> awaited_;
  Instant quietAt_ = kNever;  ///< end of a reply that ends by quiet
  Instant discardUntil_{};    ///< until then stray bytes may belong to an older command
  Instant discardSince_ = kNever;
  milliseconds replyLimit_;

  RigctldHandshake handshake_;
  Instant greetingSince_{};
  Instant nextAttempt_ = kNever;  ///< of a question that a silent radio left open
  Instant reopenAt_ = kNever;
  milliseconds backOff_;
  LastingFailures lastingFailures_;

  std::shared_ptr<const RigctldCapabilities> can_;
  RigctldReadings readings_;
  PollPlan plan_;
  RequestBox requests_;
  RigctldHealth health_;
  RigctldExperience experience_;
  Instant nextTrialAt_{};  ///< until then nothing is tried that the radio may be slow to refuse

  std::string output_;
  std::vector<RigReport> reports_;
};

}  // namespace kelvane::sondrel
