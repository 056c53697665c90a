#pragma once

#include <filesystem>
#include <functional>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "base/file_lock.h"
#include "components/sondrel/inbox.h"
#include "components/sondrel/sharing/share_server.h"
#include "components/sondrel/sharing/share_setup.h"

namespace kelvane::sondrel {

class Receiver;

/// One receiver that is to be shared. The key names it, whatever its place or name.
struct SharedEntry {
  std::string key;
  ShareSetup setup;
  std::uint16_t firstPort = 0;  ///< where a free port is looked for

  bool operator==(const SharedEntry&) const = default;
};

/// What is shared of one instance's receivers, on the user-interface thread: publishes what is
/// known of them, hands on what programs ask for, and says who is there. Of several processes that
/// have the instance open the first one alone opens the ports.
class Sharing {
 public:
  struct Callbacks {
    /// A program asks for a value. The order is not carried out again.
    std::function<void(const std::string& key, const ShareOrder& order)> ordered;
    /// The state or the programs of a receiver have changed.
    std::function<void(const std::string& key)> changed;
  };

  Sharing(const std::shared_ptr<Inbox>& inbox, Callbacks callbacks);
  ~Sharing();
  Sharing(const Sharing&) = delete;
  Sharing& operator=(const Sharing&) = delete;

  /// What is shared from the next tick() on, before which the facts are to be published; `lock` is
  /// the file by which processes agree who shares.
  void configure(const std::filesystem::path& lock, const std::vector<SharedEntry>& entries,
                 Instant now);
  bool shares(const std::string& key) const { return shares_.contains(key); }
  /// Tells programs what is known of the receiver now.
  void publish(const std::string& key, const Receiver& receiver, Instant now);
  /// Somebody moved the receiver; empty for who is no program.
  void moved(const std::string& key, const std::string& program);

  /// Does what is due, and says when something will be.
  void tick(Instant now);
  Instant nextDue() const { return tryAt_; }

  /// How the receiver is shared, in words; empty where it is not.
  std::string state(const std::string& key, Instant now) const;
  /// Where it is reached; empty where it is not.
  std::string address(const std::string& key) const;
  std::vector<std::string> programs(const std::string& key) const;
  std::string movedBy(const std::string& key) const;
  /// Ends the connection of one of the receiver's programs; false where it is none of them.
  bool end(const std::string& key, const std::string& program);

 private:
  struct Share {
    SharedEntry entry;
    std::shared_ptr<SharedReceiver> receiver = std::make_shared<SharedReceiver>();
    SharedFacts facts;
    bool orderTaken = false;  ///< programs wait for facts that know of it
    bool open = false;        ///< programs are let in
    Instant openBy{};         ///< then also without an answer of the receiver
    ShareView view;
    std::string movedBy;
  };

  const Share* share(const std::string& key) const;
  void startServer(Instant now);
  void takeOrders(const std::string& key);
  void takeViews();

  Mailbox mailbox_;
  Callbacks callbacks_;
  std::map<std::string, Share> shares_;
  std::filesystem::path lockFile_;
  FileLock lock_;
  Result<> lockResult_;     ///< of the last try
  Instant tryAt_ = kNever;  ///< when the lock is tried again
  std::unique_ptr<ShareServer> server_;
};

}  // namespace kelvane::sondrel
