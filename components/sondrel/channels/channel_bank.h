#pragma once

#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "contract/types.h"

namespace kelvane::sondrel {

/// One memory channel. A channel with no frequency is empty.
struct ChannelRecord {
  Hz frequency = 0;
  Hz bfo = 0;
  Setting mode = 0;
  Hz filter = 0;
  Setting agc = 0;
  Long skip = 0;

  bool empty() const { return frequency == 0; }
  bool operator==(const ChannelRecord&) const = default;
};

/// Some of a receiver's channels; an empty record is a channel that was cleared.
using ChannelChanges = std::map<Channel, ChannelRecord>;

/// Changes as lines like those of a bank, cleared channels too, and back; other lines are ignored.
std::string changesText(const ChannelChanges& changes);
ChannelChanges readChanges(std::string_view text);

/// The memory channels of one receiver, and the text in which they are kept.
class ChannelBank {
 public:
  /// Reads the text; none where it is no text of channels at all. Lines that cannot be read are
  /// kept for writing and counted in `unread`.
  static std::optional<ChannelBank> read(std::string_view text);
  std::string text() const;

  /// The channel's record, an empty one where nothing is stored.
  ChannelRecord at(Channel channel) const;
  /// Stores the record; an empty one clears the channel. Answers whether that changed anything.
  bool put(Channel channel, const ChannelRecord& record);
  std::size_t unread() const { return kept_.size(); }

 private:
  void readLine(std::string_view line);

  std::map<Channel, ChannelRecord> records_;
  std::vector<std::string> kept_;
};

}  // namespace kelvane::sondrel
