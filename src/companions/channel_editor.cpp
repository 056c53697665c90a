#include "companions/channel_editor.h"

#include <algorithm>
#include <array>

#include "base/instance_name.h"
#include "controls/channel_step.h"
#include "ui/control_ids.h"

namespace kelvane {

namespace {

using enum ChannelValue;

constexpr int kFrequencyColumn = 1;
constexpr int kSkipColumn = 6;

constexpr std::array kButtons{
    ChannelButton{id::ChnGetIt, &ChannelView::GetIt, "&Get",
                  "Get current receiver settings and store in table"},
    ChannelButton{id::ChnSave, &ChannelView::Save, "&Save",
                  "Save modified channels to the receiver"},
    ChannelButton{id::ChnReload, &ChannelView::Reload, "&Reload", "Reload channels from receiver"},
    ChannelButton{id::ChnExport, &ChannelView::Export, "&Export", "Export channels to a file"},
    ChannelButton{id::ChnImport, &ChannelView::Import, "&Import", "Import channel from a file"},
    ChannelButton{id::ChnClear, &ChannelView::Clear, "C&lear",
                  "Clear all stored receiver channel memories"},
    ChannelButton{id::ChnCancel, &ChannelView::Cancel, "&Close",
                  "Quit without saving modifications"},
};

}  // namespace

std::span<const ChannelButton> channelButtons() { return kButtons; }

ChannelEditor::ChannelEditor(ReceiverComponent& component, const FileServices& files,
                             std::shared_ptr<FileSteps> disk, Owner owner)
    : component_(component),
      files_(files),
      disk_(std::move(disk)),
      owner_(std::move(owner)),
      table_(component, *this),
      grid_(table_, ChannelTable::columns()),
      reading_(component, owner_.LChn),
      work_(owner_.wake) {
  for (const ChannelButton& row : kButtons) {
    (view_.*row.button).text = row.caption;
    (view_.*row.button).tip = row.tip;
  }
}

void ChannelEditor::Receiver(Index rx) {
  if (view_.open && (busy() || table_.unsaved())) {
    if (rx != nReceiver_ && !busy())
      say("There are unsaved edits for " + name_ + ": save them, or close this window first.");
    return owner_.bringUp();
  }
  nReceiver_ = rx;
  name_ = component_.GetRxName(rx);
  gone_ = false;
  table_.open(rx);
  grid_.showColumn(kSkipColumn, table_.hasSkip());
  grid_.refresh();
  grid_.select({0, kFrequencyColumn});
  view_.open = true;
  startReading(Purpose::Open);
  owner_.bringUp();
}

void ChannelEditor::startReading(Purpose purpose) {
  purpose_ = purpose;
  backup_.clear();
  rescue_ = purpose == Purpose::Reload && table_.unsaved() ? workingRows() : ChannelRows();
  if (!reading_.start(nReceiver_, owner_.now()))
    return readingFailed("The receiver did not start to read its channels.");
  if (purpose != Purpose::Backup) {
    unsaved_ = false;
    table_.empty();
    grid_.refresh();
  }
  say("Reading the channels of " + name_ + " ...");
}

void ChannelEditor::Update(Channel channel, Hz frequency, Hz bfo, Setting mode, Setting filter,
                           Setting agc, Long skip) {
  if (!reading_.running()) return;
  if (channel == -1) {
    if (reading_.ended()) readingEnded();
    return;
  }
  if (!table_.has(channel)) return;
  reading_.arrived(channel, owner_.now());
  const ChannelRow row{{frequency, bfo, mode, filter, agc, skip}};
  if (purpose_ == Purpose::Backup)
    backup_.emplace_back(channel, row);
  else
    table_.report(channel, row);
  say("Reading channel " + channelText(channel, table_.count()) + ", " +
      std::to_string(reading_.read()) + " of " + std::to_string(table_.rows()) + " ...");
}

void ChannelEditor::readingEnded() {
  say(std::to_string(reading_.read()) + " channels of " + name_ + " read.");
  if (purpose_ != Purpose::Backup) return;
  backup_ = stored(std::move(backup_));
  if (backup_.empty()) return clearChannels("There was nothing in them.");
  const auto path = datedFile();
  const std::string kept =
      "They are kept in " + pathText(path) + ": Reload, Import that file and Save bring them back.";
  start(std::make_unique<WriteTask>(work_, disk_, path, text(backup_), kept),
        [this, kept](const ChannelTask& written) {
          if (written.failed())
            say(written.words() + " Nothing was cleared.");
          else
            clearChannels(kept);
        });
}

void ChannelEditor::readingFailed(const std::string& why) {
  if (purpose_ == Purpose::Reload) return closeAfterReload(why);
  say(purpose_ == Purpose::Backup ? why + " Nothing was cleared: there is no backup." : why);
}

void ChannelEditor::closeAfterReload(const std::string& why) {
  if (rescue_.empty()) {
    view_.open = false;
    return changed();
  }
  const auto path = datedFile();
  start(std::make_unique<WriteTask>(work_, disk_, path, text(stored(rescue_)),
                                    " The unsaved edits are kept in " + pathText(path) + "."),
        [this, why](const ChannelTask& written) { rescued(why, written); });
}

/// Without a file the window is the only place for the edits.
void ChannelEditor::rescued(const std::string& why, const ChannelTask& written) {
  const auto rows = std::exchange(rescue_, {});
  if (!written.failed()) {
    close();
    files_.boxes.show("Error: " + why + written.words(), "", Buttons::Ok);
    return;
  }
  table_.edit(rows);
  grid_.refresh();
  say(why + " The unsaved edits could not be kept in a file. " + written.words() +
      " They are still here: Export keeps them elsewhere.");
}

void ChannelEditor::receiversChanged(const ReceiverMoves& moves) {
  if (!view_.open || gone_) return;
  const Index now = moves(nReceiver_);
  const bool same = now != -1 && component_.GetRxChnFirst(now) == table_.first() &&
                    component_.GetRxChnCount(now) == table_.count();
  if (same) return moved(now);
  reading_.stop();
  task_.reset();
  gone_ = true;
  say(name_ + " is no longer among the receivers as it was. Export keeps the edits.");
}

/// The receiver has another place and perhaps another name. What goes on goes on.
void ChannelEditor::moved(Index rx) {
  nReceiver_ = rx;
  name_ = component_.GetRxName(rx);
  table_.moved(rx);
  reading_.moved(rx);
}

void ChannelEditor::clicked(int control) {
  if (!view_.open) return;
  grid_.commit();
  for (const ChannelButton& row : kButtons) {
    if (row.id == control && !(view_.*row.button).enabled) return;
  }
  switch (control) {
    case id::ChnGetIt:
      return getIt();
    case id::ChnSave:
      return Save_Click();
    case id::ChnReload:
      return startReading(Purpose::Reload);
    case id::ChnExport:
      return Export_Click();
    case id::ChnImport:
      return Import_Click();
    case id::ChnClear:
      return Clear_Click();
    case id::ChnCancel:
      return close();
    default:
      return;
  }
}

void ChannelEditor::escape() {
  if (!busy() && !table_.unsaved()) return close();
  say(busy() ? "Still at work: " + view_.Status.text
             : "There are unsaved edits. Save sends them, Close drops them.");
}

void ChannelEditor::close() {
  if (!view_.open) return;
  grid_.cancel();
  reading_.stop();
  task_.reset();
  onTaskDone_ = {};
  view_.open = false;
  changed();
}

void ChannelEditor::deliver() {
  if (work_.deliver() && task_ && task_->waits()) runTask();
}

void ChannelEditor::tick(Instant now) {
  // What was thrown may have come before the buttons were told.
  if (view_.hourglass != busy()) changed();
  if (reading_.tick(now)) {
    const Count read = reading_.read();
    readingFailed("The receiver stopped reading after " + std::to_string(read) +
                  (read == 1 ? " channel." : " channels."));
    changed();
  }
  if (task_ && now >= taskDue_) runTask();
}

Instant ChannelEditor::nextDue() const {
  return std::min(reading_.nextDue(), task_ ? taskDue_ : kNever);
}

void ChannelEditor::say(std::string words) {
  view_.Status.text = std::move(words);
  changed();
}

void ChannelEditor::changed() {
  const bool working = busy();
  view_.hourglass = working;
  for (const ChannelButton& row : kButtons) (view_.*row.button).enabled = !working && !gone_;
  if (gone_) view_.Export.enabled = view_.Cancel.enabled = !working;
  if (grid_.locked() != (working || gone_)) grid_.lock(working || gone_);
  // Not with each channel that comes or goes: the whole table would be looked at for each.
  if (!working) unsaved_ = view_.open && table_.unsaved();
  view_.caption = unsaved_ ? "Channels [unsaved edits]" : "Channels";
  if (listener_) listener_();
}

Global::Point ChannelEditor::placed(const Global::Area& main, Global::Size own,
                                    std::int32_t screenHeight, int dpi) {
  constexpr std::int32_t kGap = 40;  // twips
  const std::int32_t below = main.at.top + main.size.height + Global::pixelsFromTwips(kGap, dpi);
  // No gap above: the window is to stay as near as it can.
  const std::int32_t top = below + own.height <= screenHeight ? below : main.at.top - own.height;
  return {main.at.left, top};
}

}  // namespace kelvane
