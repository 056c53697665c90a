#pragma once

#include <atomic>
#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "base/file_saver.h"
#include "components/sondrel/component_windows.h"
#include "components/sondrel/config/config_file.h"
#include "components/sondrel/event_queue.h"
#include "components/sondrel/forwarding.h"
#include "components/sondrel/hosted_receiver.h"
#include "components/sondrel/sharing/sharing.h"
#include "components/sondrel/simulated/simulated_receiver.h"
#include "contract/components.h"

namespace kelvane::sondrel {

/// The receiver component, whole but for its windows: the configured receivers of one instance,
/// their channels, forwarding, and the events. Rules and units of the operations stand in
/// contract/sondrel_operations.inc.
///
/// Everything is called on one thread, the user-interface thread.
class SondrelCore : public ReceiverComponent, private ReceiverHost {
 public:
  /// `dataFolder` holds one folder for each instance. `clock` is asked at each operation. `wake` is
  /// called, from any thread, when tick() and deliverEvents() should be called soon, once for each
  /// batch of work: it must call neither itself, and must not lose a call. `steps` are the disk
  /// that files are written to.
  SondrelCore(std::filesystem::path dataFolder, std::function<Instant()> clock,
              std::function<void()> wake, ComponentWindows& windows,
              std::shared_ptr<FileSteps> steps = std::make_shared<FileSteps>());
  ~SondrelCore() override;
  SondrelCore(const SondrelCore&) = delete;
  SondrelCore& operator=(const SondrelCore&) = delete;

#define ASK(name, Result, fallback, params, args) Answer<Result> name params override;
#define TELL(name, params, args) Outcome name params override;
#include "contract/sondrel_operations.inc"
#undef ASK
#undef TELL

  /// A listener hears the events that are raised from now on. Both may be called in a handler.
  void addListener(ReceiverListener& listener) { events_.add(listener); }
  void removeListener(ReceiverListener& listener) { events_.remove(listener); }

  /// Does what is due. Raises events, but delivers none.
  void tick(Instant now);
  /// When tick() has something to do next; kNever when nothing waits for a time.
  Instant nextDue();
  /// Delivers the events that were raised. May be called in a handler, from a nested message loop.
  void deliverEvents();
  /// Returns when the files of channels are written that were changed before the last tick().
  void finishWriting() { saver_.finish(); }

  /// What the operator should know of the configuration that was opened, in words, a line each;
  /// empty when all is well. ComponentWindows::tell has said it already.
  const std::string& configurationNote() const { return config_.note; }

  /// The list of receivers for editing, and its taking effect: written, receivers made, moved and
  /// taken away (one whose entry did not change keeps its link), DrvUpdated raised. What another
  /// process changed in the list meanwhile stays; it fails where both changed the same receiver. On
  /// failure nothing has changed. Waits for nobody who holds the file: it is `held` then, and worth
  /// another try. Forwarding is off afterwards.
  DriversModel drivers() const { return DriversModel(config_.config); }
  Result<> applyDrivers(const DriversModel& model);

  // For a receiver's settings dialog. The pointers hold until the next operation.

  /// Null for an index that there is not.
  const Receiver* receiver(Index rx) const;
  /// The receiver that keeps its channels in these memories; null where there is none.
  const Receiver* receiverOf(const std::string& memories) const;
  /// What the link of the receiver of this very entry has found, in words, a line each; empty
  /// where there is no such receiver or its link is not up.
  std::string found(const ReceiverEntry& entry) const;
  /// How the receiver with these memories is shared, for the drivers' dialog.
  struct ShareSight {
    std::string state;
    std::string address;
    std::vector<std::string> programs;
    std::string movedBy;
  };
  ShareSight shareSight(const std::string& memories) const;
  bool endProgram(const std::string& memories, const std::string& program);
  /// Null for a receiver that is not simulated.
  const SimulatedReceiver* simulated(Index rx) const;
  /// Turns a knob at a simulated receiver; false where it has no such value or does not answer.
  bool turnKnob(Index rx, Item item, std::int32_t value);
  bool turnLine(Index rx, Long line, Long state);
  bool setFaults(Index rx, const SimulatedFaults& faults);

 private:
  void raise(bool global, Raise event, std::uint32_t series) override;
  void confirmed(Receiver& receiver, const Change& change) override;
  std::shared_ptr<Inbox> inbox() override { return inbox_; }

  HostedReceiver* at(Index rx) const;
  HostedReceiver* withMemories(const std::string& memories) const;
  void share();
  void carryOut(const std::string& memories, const ShareOrder& order);
  void sharingChanged(const std::string& memories);
  SimulatedReceiver* simulatedAt(Index rx) const;
  template <class Result, class Ask>
  Answer<Result> ask(Index rx, Result fallback, Ask ask) const;
  template <class Tell>
  Outcome tell(Index rx, Tell tell);
  Outcome request(Index rx, Item item, std::int32_t value);
  Outcome requestNext(Index rx, Item item, std::optional<std::int32_t> (*next)(const Receiver&));

  bool open(const std::string& instance);
  bool takeInConfig();
  void editDrivers();
  void host(const std::vector<ReceiverEntry>& entries);
  std::unique_ptr<HostedReceiver> make(const ReceiverEntry& entry);
  std::filesystem::path instanceFolder() const;
  std::filesystem::path configFile() const { return instanceFolder() / "receivers.txt"; }
  void note(const std::string& words);
  std::vector<HostedReceiver*> inOrderOfDue();
  void afterwards();
  void wakeOnce();

  std::filesystem::path dataFolder_;
  std::function<Instant()> clock_;
  std::function<void()> wake_;
  std::atomic<bool> woken_ = false;
  ComponentWindows& windows_;
  std::shared_ptr<FileSteps> steps_;
  std::shared_ptr<Inbox> inbox_;
  FileSaver saver_;
  EventQueue events_;
  Forwarding forwarding_;
  std::optional<std::string> instance_;
  LoadedConfig config_;
  std::vector<std::unique_ptr<HostedReceiver>> receivers_;
  Sharing sharing_;
  Index shown_ = -1;
  bool editing_ = false;
  bool owned_ = false;          ///< somebody sits before the windows
  Instant announced_ = kNever;  ///< what nextDue() last answered
};

template <class Result, class Ask>
Answer<Result> SondrelCore::ask(Index rx, Result fallback, Ask ask) const {
  const HostedReceiver* hosted = at(rx);
  if (!hosted) return Answer<Result>::failed(fallback);
  return ask(*hosted->receiver);
}

template <class Tell>
Outcome SondrelCore::tell(Index rx, Tell tell) {
  HostedReceiver* hosted = at(rx);
  const Outcome outcome = hosted ? tell(*hosted, clock_()) : Outcome::Failed;
  afterwards();
  return outcome;
}

}  // namespace kelvane::sondrel
