#include "components/sondrel/channels/channel_bank.h"

#include <algorithm>
#include <array>
#include <utility>

#include "base/number.h"
#include "base/text.h"
#include "contract/modes.h"

namespace kelvane::sondrel {

namespace {

constexpr std::string_view kHead =
    "# Memory channels of one receiver, a line each:\r\n"
    "# channel; frequency, Hz; BFO, Hz; mode; filter, Hz; AGC; 1 to leave it out of a scan\r\n";

/// The mode as a name, so that people can read the file; else its number.
std::string modeText(Setting mode) {
  const std::string_view name = modeName(mode);
  return name.empty() ? std::to_string(mode) : std::string(name);
}

std::optional<std::int32_t> whole(std::string_view text) {
  const auto number = wholeNumber(text);
  if (!number || *number < INT32_MIN || *number > INT32_MAX) return std::nullopt;
  return static_cast<std::int32_t>(*number);
}

std::optional<std::int32_t> modeOf(std::string_view text) {
  if (const auto mode = modeNamed(trimmed(text))) return static_cast<std::int32_t>(*mode);
  return whole(text);
}

/// A line of channel and record; none where it is another one.
std::optional<ChannelChanges::value_type> channelLine(std::string_view line) {
  constexpr std::size_t kFields = 7;
  const auto fields = split(line, ';');
  std::array<std::optional<std::int32_t>, kFields> values;
  for (std::size_t i = 0; i < kFields && fields.size() == kFields; ++i) {
    values[i] = i == 3 ? modeOf(fields[i]) : whole(fields[i]);
  }
  const bool fine = std::ranges::all_of(values, [](const auto& v) { return v.has_value(); });
  if (!fine || *values[0] < 0 || *values[1] < 0) return std::nullopt;
  return std::pair{*values[0], ChannelRecord{*values[1], *values[2], *values[3], *values[4],
                                             *values[5], *values[6]}};
}

std::string lineOf(Channel channel, const ChannelRecord& r) {
  return std::to_string(channel) + "; " + std::to_string(r.frequency) + "; " +
         std::to_string(r.bfo) + "; " + modeText(r.mode) + "; " + std::to_string(r.filter) + "; " +
         std::to_string(r.agc) + "; " + std::to_string(r.skip) + "\r\n";
}

}  // namespace

std::string changesText(const ChannelChanges& changes) {
  std::string text(kHead);
  for (const auto& [channel, record] : changes) text += lineOf(channel, record);
  return text;
}

ChannelChanges readChanges(std::string_view text) {
  ChannelChanges changes;
  for (const std::string_view line : split(text, '\n')) {
    if (const auto change = channelLine(trimmed(line)))
      changes.insert_or_assign(change->first, change->second);
  }
  return changes;
}

std::optional<ChannelBank> ChannelBank::read(std::string_view text) {
  if (text.find('\0') != std::string_view::npos) return std::nullopt;
  ChannelBank bank;
  for (const std::string_view line : split(text, '\n')) bank.readLine(trimmed(line));
  // Channels that cannot be read beside good ones are somebody's slip of the keyboard; a text of
  // nothing else is another file, or what a broken disk has left of this one.
  const bool strange = !text.starts_with(kHead.substr(0, 2)) && bank.records_.empty();
  return strange ? std::nullopt : std::optional(std::move(bank));
}

void ChannelBank::readLine(std::string_view line) {
  if (line.empty() || line.front() == '#') return;
  const auto channel = channelLine(line);
  if (!channel || channel->second.empty())
    kept_.emplace_back(line);
  else
    records_.insert_or_assign(channel->first, channel->second);
}

std::string ChannelBank::text() const {
  std::string text(kHead);
  for (const auto& [channel, record] : records_) text += lineOf(channel, record);
  for (const std::string& line : kept_) text += line + "\r\n";
  return text;
}

ChannelRecord ChannelBank::at(Channel channel) const {
  const auto found = records_.find(channel);
  return found == records_.end() ? ChannelRecord{} : found->second;
}

bool ChannelBank::put(Channel channel, const ChannelRecord& record) {
  if (at(channel) == record) return false;
  if (record.empty()) {
    records_.erase(channel);
  } else {
    records_[channel] = record;
  }
  return true;
}

}  // namespace kelvane::sondrel
