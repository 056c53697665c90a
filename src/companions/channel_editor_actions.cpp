#include <algorithm>
#include <filesystem>
#include <optional>
#include <system_error>

#include "base/barrier.h"
#include "base/code_page.h"
#include "base/instance_name.h"
#include "companions/channel_editor.h"
#include "receiver/shown_receiver.h"
#include "ui/control_ids.h"

// What the buttons and keys of the channel window do.

namespace kelvane {

namespace {

using enum ChannelValue;

constexpr Hz kAside = 1000;

}  // namespace

void ChannelEditor::getIt() {
  if (busy() || gone_ || table_.rows() == 0) return;
  const Index rx = nReceiver_;
  const Hz frequency = component_.GetRxFrequency(rx, kTuned);
  if (frequency == -1) return say("The receiver does not say its frequency.");
  const Channel channel = table_.channelOf(grid_.current().row);
  ChannelRow row = table_.working(channel);
  row[Frequency] = frequency;
  if (const Hz bfo = component_.GetRxBfo(rx); bfo != 0) row[Bfo] = bfo;
  // What the receiver does not say is not what the channel held before.
  const auto take = [&row](ChannelValue value, Setting setting, Setting least) {
    row[value] = setting >= least ? std::optional<Long>(setting) : std::nullopt;
  };
  take(Mode, component_.GetRxMode(rx), 0);
  take(Filter, component_.GetRxFilter(rx), 1);
  take(Agc, component_.GetRxAgc(rx), 0);
  table_.edit({{channel, row}});
}

void ChannelEditor::emptyChannel() {
  if (busy() || gone_ || table_.rows() == 0) return;
  table_.edit({{table_.channelOf(grid_.current().row), kEmptyChannel}});
}

void ChannelEditor::select(Channel channel) {
  if (gone_) return;
  if (!takesCommands(component_, nReceiver_)) return say("The receiver takes no commands now.");
  if (component_.SelectRxChannel(nReceiver_, channel) != Outcome::Done)
    say("The receiver did not take the channel.");
}

void ChannelEditor::Save_Click() { start(std::make_unique<SaveTask>(component_, table_)); }

/// The operator is not asked: what the receiver holds is read anew and kept in a file first.
void ChannelEditor::Clear_Click() { startReading(Purpose::Backup); }

void ChannelEditor::clearChannels(const std::string& kept) {
  if (component_.GetRxChannel(nReceiver_) != -1) leaveChannel();
  start(std::make_unique<ClearTask>(component_, table_, kept));
}

/// Tunes the receiver off its memory channel and back to where it was.
void ChannelEditor::leaveChannel() {
  const Index rx = nReceiver_;
  const Hz frequency = component_.GetRxFrequency(rx, kTuned);
  if (frequency == -1) return;
  // At the upper end the step would be cut short, and the way back be longer than the way there.
  const Hz aside = frequency > component_.GetRxFrqMax(rx) - kAside ? -kAside : kAside;
  component_.SetRxFrequency(rx, false, frequency + aside);
  component_.SetRxFrequency(rx, false, component_.GetRxFrequency(rx, kTuned) - aside);
}

void ChannelEditor::Export_Click() {
  const auto name = files_.flows.saveFile(name_ + "_Mem", "txt");
  if (!name) return;
  auto replaced = files_.flows.takeReplaced();
  if (!view_.open) return;
  const auto rows = stored(workingRows());
  const std::string done = std::to_string(rows.size()) + " channels exported to " + *name + ".";
  start(std::make_unique<WriteTask>(work_, disk_, pathFromText(*name), text(rows), done,
                                    std::move(replaced)));
}

void ChannelEditor::Import_Click() {
  const auto name = files_.flows.openFile(name_ + "_Mem", "txt");
  if (!name || !view_.open) return;
  start(std::make_unique<ImportTask>(pathFromText(*name), table_));
}

void ChannelEditor::start(std::unique_ptr<ChannelTask> task, OnTaskDone then) {
  task_ = std::move(task);
  onTaskDone_ = std::move(then);
  taskDue_ = task_->waits() ? kNever : owner_.now();
  say(task_->words());
}

void ChannelEditor::runTask() {
  bool more = false;
  const auto stopped = [&](const std::string& why) { taskStopped(why); };
  if (!barrier(
          "working on channels", [&] { more = task_->step(); }, stopped))
    return;
  if (!more) return taskEnded();
  say(task_->words());
}

/// A step that was broken off may not be done again: what it had read is gone.
void ChannelEditor::taskStopped(const std::string& why) {
  const auto task = std::exchange(task_, nullptr);
  onTaskDone_ = {};
  say(task->words() + " Stopped: " + why + ".");
}

void ChannelEditor::taskEnded() {
  // Away first: what comes next may show a message, and time goes on under it.
  const auto task = std::move(task_);
  const auto then = std::move(onTaskDone_);
  onTaskDone_ = {};
  say(task->words());
  grid_.refresh();
  if (!task->message().empty())
    files_.boxes.show(task->message(), "Error: Invalid format", Buttons::OkCancel);
  if (then) then(*task);
}

std::string ChannelEditor::text(const ChannelRows& rows) {
  return toCodePage(channelFile(rows, table_.modes(), table_.agc()));
}

ChannelRows ChannelEditor::workingRows() const {
  ChannelRows rows;
  for (Channel channel = table_.first(); channel < table_.count(); ++channel)
    rows.emplace_back(channel, table_.working(channel));
  return rows;
}

/// Without the empty channels.
ChannelRows ChannelEditor::stored(ChannelRows rows) {
  std::erase_if(rows, [](const auto& row) { return row.second.free(); });
  return rows;
}

std::filesystem::path ChannelEditor::datedFile() const {
  const DateTime now = files_.calendar.now();
  std::string start = safeFileName(name_) + "_Mem " + dateText(now) + " " + timeText(now);
  std::ranges::replace(start, ':', '-');
  const auto folder = files_.folder / "Backups";
  std::filesystem::path path = folder / pathFromText(start + ".txt");
  std::error_code unknown;
  for (int i = 2; std::filesystem::exists(path, unknown); ++i)
    path = folder / pathFromText(start + " " + std::to_string(i) + ".txt");
  return path;
}

}  // namespace kelvane
