#pragma once

#include <filesystem>
#include <functional>
#include <memory>
#include <string>

#include "base/file_saver.h"
#include "base/time.h"
#include "components/sondrel/channel_bank.h"
#include "components/sondrel/inbox.h"

namespace kelvane::sondrel {

/// A receiver's channels and the file that keeps them. A change is on its way to the disk at the
/// next tick, and tried again for as long as the disk refuses.
class ChannelKeeper {
 public:
  /// Told in words of what could not be read or written.
  using Tell = std::function<void(const std::string&)>;

  /// Reads the file; a damaged one is kept aside.
  ChannelKeeper(std::filesystem::path file, FileSaver& saver, Mailbox mailbox, Tell tell);
  /// What is not on its way to the disk yet sets out.
  ~ChannelKeeper();
  ChannelKeeper(const ChannelKeeper&) = delete;
  ChannelKeeper& operator=(const ChannelKeeper&) = delete;

  ChannelRecord at(Channel channel) const { return bank_.at(channel); }
  /// `now` is when the file may be written.
  void put(Channel channel, const ChannelRecord& record, Instant now);

  void tick(Instant now);
  Instant nextDue() const { return due_; }

 private:
  void load();
  void save();
  void ended(const FileResult& result);

  std::filesystem::path file_;
  FileSaver& saver_;
  Mailbox mailbox_;
  Tell tell_;
  ChannelBank bank_;
  Instant due_ = kNever;
  bool failing_ = false;  ///< the last write failed, which has been said
  bool retry_ = false;
};

}  // namespace kelvane::sondrel
