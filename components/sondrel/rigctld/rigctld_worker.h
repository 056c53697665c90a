#pragma once

#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <thread>
#include <vector>

#include "base/child_process.h"
#include "base/file_lock.h"
#include "base/tcp_client.h"
#include "components/sondrel/radios/own_server.h"
#include "components/sondrel/rigctld/rigctld_session.h"
#include "components/sondrel/rigctld/server_keeper.h"

namespace kelvane::sondrel {

/// Where a server is. Any text and any number are accepted; what is no address fails when the link
/// is opened.
struct RigctldAddress {
  std::string host;
  std::int32_t port = 0;
  /// Starts a server of our own there while the link is wanted; empty for one that runs anyhow.
  std::string command = {};
  /// The server of a radio, which is started while the link is wanted, at a port of its own; null
  /// where there is none.
  std::shared_ptr<OwnServer> own = {};

  bool startsServer() const { return own || !command.empty(); }
};

/// Runs one session on a thread of its own. Every function may be called from any thread and
/// returns at once; the destructor waits only for the thread to take notice.
class RigctldWorker {
 public:
  /// Called on the worker's thread, and must not block. `order` is the number of the newest opening
  /// or closing that was known when the reports were made.
  using Deliver = std::function<void(std::vector<RigReport>, std::uint32_t order)>;

  RigctldWorker(RigctldAddress address, const RigctldOptions& options, Deliver deliver);
  ~RigctldWorker();
  RigctldWorker(const RigctldWorker&) = delete;
  RigctldWorker& operator=(const RigctldWorker&) = delete;

  // As the session's functions of the same names; openings and closings are numbered, from 1.
  std::uint32_t open(bool reopen);
  std::uint32_t close();
  void request(RigRequest request);
  void show(bool shown);

  /// Why the server of its own has not come up, or does not reach its radio, in words; empty where
  /// nothing is known. From any thread.
  std::string fault() const;

 private:
  /// What waits to be told to the session. Opening, closing and requests keep their order, so that
  /// a request made before a closing is not carried out after it.
  struct Mail {
    bool stop = false;
    std::optional<bool> shown;
    bool close = false;
    std::optional<bool> open;  ///< comes after `close`
    RequestBox requests;       ///< come after both
    std::uint32_t order = 0;   ///< of the newest opening or closing
  };

  template <class Change>
  std::uint32_t post(Change change);
  void run();
  bool serve();
  Result<> startSoleServer();
  bool serverRunsElsewhere();
  void dismissServer();
  bool readMail(Instant now);
  void keepServer(Instant now);
  Result<> startServer();
  bool serverRuns();
  void rememberFault(const std::string& words);
  void lostRadio();
  void keepConnection(Instant now);
  Instant nextDue() const;
  void feed(const TcpClient::Events& events, Instant now);
  void deliver();

  RigctldAddress address_;
  RigctldSession session_;
  Deliver deliver_;
  TcpClient client_;
  ChildProcess process_;
  FileLock placeLock_;            ///< the right to start a server at that place
  bool servedElsewhere_ = false;  ///< another process has it, and its server is used
  ServerKeeper keeper_;
  std::uint32_t connection_ = 0;
  Instant nextConnectAt_ = kNever;  ///< next attempt at a server that does not listen yet
  std::uint32_t order_ = 0;
  std::string written_;   ///< what the server of its own wrote last
  bool reached_ = false;  ///< the link was up with the server that runs now
  mutable std::mutex mutex_;
  Mail mail_;
  std::string fault_;
  std::thread thread_;  ///< last: it uses everything above
};

}  // namespace kelvane::sondrel
