#pragma once

#include <functional>
#include <string>
#include <utility>
#include <vector>

#include "companions/channel_row.h"
#include "companions/setting_names.h"
#include "grid/grid.h"
#include "grid/undo_stack.h"

namespace kelvane {

/// Channels by their numbers.
using ChannelRows = std::vector<std::pair<Channel, ChannelRow>>;

/// What the keys of the channel grid ask for beside editing.
class ChannelKeys {
 public:
  virtual ~ChannelKeys() = default;
  /// The receiver's current setting is wanted in the current row.
  virtual void getIt() = 0;
  /// The channel of the current row is to be emptied.
  virtual void emptyChannel() = 0;
  virtual void select(Channel channel) = 0;
  /// The operator changed the table.
  virtual void edited() = 0;
};

/// The channels of one receiver: the working table that the grid edits, and the reference table,
/// what the receiver last reported.
class ChannelTable : public GridTable {
 public:
  ChannelTable(ReceiverComponent& component, ChannelKeys& keys);

  static std::vector<GridColumn> columns();

  /// Serves this receiver from now on, with its limits and names; both tables are empty.
  void open(Index rx);
  /// The receiver has another place among the receivers.
  void moved(Index rx);
  Index receiver() const { return rx_; }
  /// Forgets everything that was reported or edited.
  void empty();

  Channel first() const { return first_; }
  /// The last channel's number plus one.
  Count count() const { return count_; }
  bool has(Channel channel) const { return channel >= first_ && channel < count_; }
  bool hasSkip() const { return skip_; }
  SettingNames& modes() { return modes_; }
  SettingNames& agc() { return agc_; }

  const ChannelRow& working(Channel channel) const { return working_[place(channel)]; }
  bool reported(Channel channel) const {
    return reference_[place(channel)][ChannelValue::Frequency].has_value();
  }
  /// The receiver reported a channel: both tables have it. One that it does not have is ignored.
  void report(Channel channel, const ChannelRow& row);
  /// The operator gives channels other values; taken back in one go.
  void edit(const ChannelRows& rows);

  /// The receiver reported the channel, and the working table holds something else, or the channel
  /// was sent since: an edit that is taken back then is to be sent too.
  bool modified(Channel channel) const;
  /// The channel is on its way to the receiver, which may take it or not.
  void sending(Channel channel) { underWay_[place(channel)] = true; }
  /// The receiver has taken the channel as the working table has it now.
  void sent(Channel channel) { sent_[place(channel)] = working_[place(channel)]; }
  /// Some channel holds what the receiver neither reported nor has taken.
  bool unsaved() const;

  GridRow rows() const override { return static_cast<GridRow>(working_.size()); }
  std::string cell(GridRow row, int column) const override;
  void store(GridCell cell, const std::string& text) override;
  bool accepts(int column, char32_t character) const override;
  std::string corrected(GridCell cell, const std::string& text) const override;
  std::vector<std::string> choices(int column) const override;
  bool keyDown(int keyCode, int shift) override;
  void recall(GridRow row) override { keys_.select(channelOf(row)); }
  bool undo() override;

  Channel channelOf(GridRow row) const { return first_ + static_cast<Channel>(row); }

 private:
  std::size_t place(Channel channel) const { return static_cast<std::size_t>(channel - first_); }
  double limited(double value, ChannelValue column) const;

  ReceiverComponent& component_;
  ChannelKeys& keys_;
  mutable SettingNames modes_, agc_;  ///< remember what they are asked
  Index rx_ = 0;
  Channel first_ = 0;
  Count count_ = 0;
  bool skip_ = false;
  std::vector<ChannelRow> working_, reference_, sent_;
  std::vector<bool> underWay_;  ///< sent since the receiver reported it
  UndoStack edits_;
};

}  // namespace kelvane
