#pragma once

#include <atomic>
#include <functional>
#include <mutex>
#include <optional>
#include <string>
#include <thread>
#include <vector>

#include "base/child_process.h"
#include "components/sondrel/radios/radio_setup.h"
#include "components/sondrel/radios/server_talk.h"

namespace kelvane::sondrel {

/// Tries a radio out before it is added: starts a server for it, asks for frequency, mode and
/// meter, and ends the server. Only questions are sent. On a thread of its own; the destructor ends
/// what goes on, within some milliseconds.
class RadioTrial {
 public:
  /// With several speeds each is tried until the radio answers at one. `wake` is called on another
  /// thread when there is more to see.
  RadioTrial(RadioSetup setup, std::vector<std::int32_t> speeds, std::function<void()> wake = {});
  ~RadioTrial();
  RadioTrial(const RadioTrial&) = delete;
  RadioTrial& operator=(const RadioTrial&) = delete;

  /// What has happened so far, a line each.
  std::string words() const;
  bool running() const { return running_; }
  /// The speed at which the radio answered; none where it has not.
  std::optional<std::int32_t> answeredAt() const;
  /// Ends it after the step that goes on; words() says so.
  void stop() { stop_ = true; }

 private:
  enum class Depth { Whole, FrequencyAlone };

  void run();
  void trySpeeds();
  bool trySpeed(Depth depth);
  Result<> startServer(ServerTalk& talk, milliseconds limit);
  bool askFrequency(ServerTalk& talk, milliseconds limit);
  void askRest(ServerTalk& talk);
  std::string failure();
  void say(const std::string& line);
  bool stopped();

  RadioSetup setup_;
  const std::vector<std::int32_t> speeds_;
  const std::function<void()> wake_;
  std::atomic<bool> stop_ = false;
  std::atomic<bool> running_ = true;
  mutable std::mutex mutex_;
  std::string words_;
  std::optional<std::int32_t> answeredAt_;
  // Of the thread alone:
  ChildProcess server_;
  std::string written_;
  std::string frequency_;
  std::string failure_;  ///< of the last speed
  std::thread thread_;   ///< last: it uses everything above
};

}  // namespace kelvane::sondrel
