#pragma once

#include <algorithm>
#include <atomic>
#include <filesystem>
#include <functional>
#include <map>
#include <memory>
#include <string>

#include "base/file_saver.h"
#include "base/time.h"
#include "components/sondrel/channels/channel_bank.h"
#include "components/sondrel/inbox.h"

namespace kelvane::sondrel {

/// A receiver's channels and the file that keeps them, which other processes may write too: only
/// the channels that were changed here are put into what the file holds at that moment. A change is
/// on its way to the disk at the next tick, and tried again for as long as the disk refuses.
class ChannelKeeper {
 public:
  struct Notes {
    /// Told in words of what could not be read or written.
    std::function<void(const std::string&)> tell;
    /// Asked in words whether to try again, for which the function is called, on any thread.
    std::function<void(const std::string&, std::function<void()>)> askAgain;
  };

  /// Reads the file; one that is damaged is kept aside. One that cannot be read now is tried again
  /// at the next ticks.
  ChannelKeeper(std::filesystem::path file, FileSaver& saver, Mailbox mailbox, Notes notes);
  /// Finishes as finish() does; what is kept in a second place then is told.
  ~ChannelKeeper();
  ChannelKeeper(const ChannelKeeper&) = delete;
  ChannelKeeper& operator=(const ChannelKeeper&) = delete;

  /// Whether it is known what the channels hold; while it is not, nothing may be put.
  bool known() const { return known_; }
  /// Takes over what another process wrote since; begins to read anew what could not be read.
  void refresh();
  ChannelRecord at(Channel channel) const { return bank_.at(channel); }
  /// `now` is when the file may be written.
  void put(Channel channel, const ChannelRecord& record, Instant now);

  /// Returns when everything that was put is in the file; fails with where it is kept for the next
  /// start, or that it is nowhere. Waits, as `retryWhileHeld` does.
  Result<> finish();
  /// Writes all channels into another file.
  Result<> writeTo(const std::filesystem::path& file) const;

  void tick(Instant now);
  Instant nextDue() const { return std::min(due_, readAt_); }

 private:
  struct Stamp {
    std::uintmax_t size = 0;
    std::filesystem::file_time_type written = {};
    bool operator==(const Stamp&) const = default;
  };
  /// A write that is under way, shared with the thread that does it.
  struct Writing {
    ChannelBank bank;  ///< what was known, then what the file holds
    ChannelChanges changes;
    std::string reason;  ///< why it failed; the writing thread's until it has ended
    std::atomic<bool> done = false;
  };

  static Result<> write(const std::filesystem::path& file, Writing& writing, FileSteps& steps);
  FileReading read();
  void readAgain(Instant now);
  void take(const FileReading& reading);
  void takeIn(const FileReading& reading);
  void save();
  void ended(const Result<>& result);
  void settle();
  std::string keepElsewhere(const std::string& reason);
  void takeBack();
  void dropSecond();
  Stamp stamp() const;

  std::filesystem::path file_;
  FileSaver& saver_;
  Mailbox mailbox_;
  Notes notes_;
  ChannelBank bank_;
  ChannelChanges changes_;  ///< not known to be in the file
  std::shared_ptr<Writing> writing_;
  std::map<std::filesystem::path, std::string> second_;  ///< what second places hold of the changes
  Stamp stamp_;
  bool known_ = false;
  Instant readAt_ = kNever;
  Instant giveUpAt_ = kNever;
  Instant due_ = kNever;
  std::string unwritten_;  ///< what finish() last answered
  bool failing_ = false;   ///< the last write failed, which has been said
  bool retry_ = false;
};

}  // namespace kelvane::sondrel
