#pragma once

#include <algorithm>
#include <array>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "base/answer.h"
#include "base/time.h"
#include "components/sondrel/capabilities.h"
#include "components/sondrel/inbox.h"
#include "components/sondrel/receiver_values.h"
#include "contract/components.h"
#include "contract/link_state.h"

namespace kelvane::sondrel {

class Receiver;
class SimulatedReceiver;

/// A value that a receiver has now, and how it came about.
struct Change {
  Item item = Item::Frequency;
  std::int32_t value = 0;
  Cause cause = Cause::Request;
  std::uint32_t ticket = 0;  ///< the request that this answers; 0 where nobody asked
  bool news = true;          ///< differs from what was confirmed before
  bool withMode = false;     ///< a filter that came with a change of mode
};

/// How a receiver gives its channels out.
struct ChannelReading {
  bool starts = true;
  std::optional<Count> stallsAfter;  ///< this many channels come, then nothing
  milliseconds each{0};              ///< time that one channel takes
};

/// What a receiver needs of the component's core.
class ReceiverHost {
 public:
  using Raise = std::function<void(ReceiverListener&)>;

  virtual ~ReceiverHost() = default;
  /// Queues an event for all listeners. `global` is what GetRxGlobalFlag answers meanwhile.
  /// Of a `series` other than 0 only the newest event is kept waiting.
  virtual void raise(bool global, Raise event, std::uint32_t series = 0) = 0;
  /// Told of each value that the radio confirmed, after its event was queued.
  virtual void confirmed(Receiver& receiver, const Change& change) = 0;
  virtual std::shared_ptr<Inbox> inbox() = 0;
};

/// One configured receiver of any kind, as the component's core hosts it. It keeps what is known of
/// the receiver, answers for what is on its way, and raises the events; a kind opens and closes the
/// link and carries requests out, at once or later, and reports what came of it.
///
/// Everything is called on the user-interface thread, and nothing may block it. A kind with threads
/// of its own sends its results through mailbox().
class Receiver {
 public:
  Receiver(ReceiverHost& host, std::string name);
  virtual ~Receiver();
  Receiver(const Receiver&) = delete;
  Receiver& operator=(const Receiver&) = delete;

  /// The place in the list of receivers, which events carry.
  Index index() const { return index_; }
  void setIndex(Index index) { index_ = index; }
  const std::string& name() const { return name_; }
  void setName(std::string name) { name_ = std::move(name); }
  const Capabilities& can() const { return can_; }

  bool online() const { return online_; }
  /// Whether the link was asked for, and not closed since.
  bool wanted() const { return wanted_; }
  bool remote() const { return remote_; }
  Long linkCode() const { return linkCode_; }
  std::int32_t newest(Item item) const { return values_.newest(item); }
  bool squelchOpen() const { return squelchOpen_; }
  /// The level at which the squelch opens, dBm; none where it is not told.
  std::optional<Long> squelchLevel() const { return squelchLevel_; }
  /// The last S-meter reading, dBm; none while the receiver does not answer.
  std::optional<Long> level() const { return level_; }
  /// State of an IO line; 0 for a line that there is not.
  Long out(Long line) const;

  /// The value that a request for this one would be carried out with: limited, rounded, the nearest
  /// filter of the newest mode; none where the receiver lacks the setting or this value of it.
  std::optional<std::int32_t> acceptable(Item item, std::int32_t value) const;
  /// Asks for a value. A frequency ends in one RxFrqUpdated even when this fails.
  Outcome request(Item item, std::int32_t value, Cause cause, Instant now);
  /// Ticket of the request for an item that waits for its answer; 0 where none does.
  std::uint32_t ticketOf(Item item) const { return values_.ticket(item); }
  /// Ticket of the next request that is accepted.
  std::uint32_t nextTicket() const { return lastTicket_ + 1; }
  Outcome connect(bool connect, Instant now);
  Outcome setRemote(bool remote, Instant now);
  Outcome setOut(Long line, Long state, Instant now);
  virtual Outcome setTime(const Text& time, Instant now);
  /// The receiver that it is where it is made up, and so has knobs on the screen; null for all that
  /// stand elsewhere.
  virtual SimulatedReceiver* simulated() { return nullptr; }
  /// What was found behind the link, in words, a line each; empty for a kind that finds nothing
  /// out.
  virtual std::string found() const { return {}; }
  /// More words than the link's code for why it is not up; empty where there are none.
  virtual std::string linkFault() const { return {}; }
  virtual ChannelReading channelReading() const { return {}; }
  /// Whether the operator looks at this receiver: it is served first then.
  virtual void setShown(bool) {}

  /// Lets what programs changed count once it has stood for two seconds. Listeners of the
  /// frequency, forwarding and the channels hear of it then: programs try a radio out by small
  /// steps away and back. Called after each piece of work.
  void settle(Instant now);
  /// When settle() has something to do; kNever when nothing waits.
  Instant settleDue() const { return *std::ranges::min_element(countsAt_); }

  /// Does what is due, and says when something will be.
  virtual void tick(Instant) {}
  virtual Instant nextDue() const { return kNever; }

 protected:
  // What a kind is asked.

  /// Opens the link anew, whatever state it is in; ends in linkUp() or linkDown(). A kind may go on
  /// trying afterwards by itself, and then reports only what changes.
  virtual void openLink(Instant now) = 0;
  /// Closes it, and reports nothing.
  virtual void closeLink(Instant now) = 0;
  /// Ends in done() or refused() with the request's ticket, unless a newer request for the same
  /// item came in the meantime, which may take this one's place without a word.
  virtual void carryOut(const Request& request, Instant now) = 0;
  /// Ends in remoteIs(). The base grants it at once.
  virtual void takeRemote(bool remote, Instant now);
  /// Ends in outIs(). The base has it done at once.
  virtual void switchOut(Long line, Long state, Instant now);

  // What a kind reports.

  /// The filter that a mode comes with: the one last used with it, else its usual one.
  Hz usualFilter(Setting mode) const;

  void setCapabilities(Capabilities can) { can_ = std::move(can); }
  /// The link has come up and the values that are known have been reported with learned(), or will
  /// be. `remote` is whether the receiver is under remote control from the start.
  void linkUp(bool remote);
  /// An attempt failed, or the link was lost. Requests that wait are refused.
  void linkDown(LinkState state);
  /// The request was carried out, with this value, which may be another one than asked for. With a
  /// mode comes the filter that is in force then, 0 for the one that the request named.
  void done(const Request& request, std::int32_t value, Hz filter = 0);
  void refused(const Request& request);
  /// The value was changed at the receiver, or has been read for the first time (Cause::Learned).
  void changed(Item item, std::int32_t value, Cause cause = Cause::AtReceiver);
  void changedMode(Setting mode, Hz filter, Cause cause = Cause::AtReceiver);
  void remoteIs(bool remote);
  void outIs(Long line, Long state);
  void levelIs(Long dBm);
  void squelchIs(bool open);
  void squelchLevelIs(Long dBm) { squelchLevel_ = dBm; }
  void dataError(Long code);

  /// For threads of the kind's own; closed before the receiver is gone.
  const Mailbox& mailbox() const { return mailbox_; }

 private:
  void raise(ReceiverHost::Raise event, bool global = false);
  void raiseItem(Item item, bool global);
  bool confirm(Item item, std::int32_t value, Cause cause);
  void raisePassing();
  void count(Item item, bool withMode);
  void conclude(Change change, bool report);
  void concludeMode(Change mode, Hz filter);
  void tell(const Change& change, bool report);
  void goOffline();

  ReceiverHost& host_;
  Mailbox mailbox_;
  std::string name_;
  Index index_ = 0;
  Capabilities can_;
  ReceiverValues values_;
  std::map<Setting, Hz> modeFilters_;  ///< the filter last used with each mode
  /// When a value that a program brought about counts; kNever for one that counts already.
  std::array<Instant, kItemCount> countsAt_;
  bool frequencyAsked_ = false;       ///< the newest request was no program's
  bool frequencyUnanswered_ = false;  ///< a program's request took the place of another's
  std::uint32_t lastTicket_ = 0;
  bool wanted_ = false;
  bool online_ = false;
  bool remote_ = false;
  bool connectAsked_ = false;
  Long linkCode_ = static_cast<Long>(LinkState::NotResponding);
  std::optional<Long> level_;
  bool squelchOpen_ = false;
  std::optional<Long> squelchLevel_;
  std::vector<Long> outputs_;
};

}  // namespace kelvane::sondrel
