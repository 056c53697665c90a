#pragma once

#include <filesystem>
#include <functional>
#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "companions/channel_reading.h"
#include "companions/channel_tasks.h"
#include "receiver/receiver_set.h"
#include "ui/file_services.h"
#include "ui/global.h"

namespace kelvane {

/// What the window `Channel` shows beside its grid, as plain values under the controls' names.
struct ChannelView {
  std::string caption = "Channels";
  bool open = false;  ///< the window is on the screen
  bool hourglass = false;
  Control GetIt, Clear, Cancel, Save, Export, Import, Reload;
  Control Status;  ///< what goes on, in words

  bool operator==(const ChannelView&) const = default;
};

/// One button of the window.
struct ChannelButton {
  int id;
  Control ChannelView::*button;
  std::string_view caption;
  std::string_view tip;
};
std::span<const ChannelButton> channelButtons();

/// The window `Channel`: reads the memory channels of one receiver into a grid, and sends what was
/// changed back. Reading, saving and the rest go on in steps, by the component's events and the
/// time, so that the window lives meanwhile and may be closed at any moment.
class ChannelEditor : private ChannelKeys {
 public:
  /// What it is given: the main window's label that counts while it reads, the clock, and how the
  /// window comes to the screen or to the front.
  /// `wake` asks, from any thread, for deliver() soon.
  struct Owner {
    Control& LChn;
    std::function<Instant()> now;
    std::function<void()> bringUp;
    std::function<void()> wake = {};
  };
  ChannelEditor(ReceiverComponent& component, const FileServices& files,
                std::shared_ptr<FileSteps> disk, Owner owner);

  const ChannelView& view() const { return view_; }
  Grid& grid() { return grid_; }
  /// Who shows the values, and is called whenever they change.
  void setListener(std::function<void()> listener) { listener_ = std::move(listener); }

  /// Opens the window for this receiver and reads its channels. While the window has unsaved edits
  /// or is at work it only comes to the front.
  void Receiver(Index rx);
  Index nReceiver() const { return nReceiver_; }
  /// The component reported a channel of the window's receiver; -1 ends the row.
  void Update(Channel channel, Hz frequency, Hz bfo, Setting mode, Setting filter, Setting agc,
              Long skip);
  /// Receivers came, went or moved.
  void receiversChanged(const ReceiverMoves& moves);

  /// A button was pressed; by ui/control_ids.h.
  void clicked(int control);
  /// Escape, which closes the window only where that loses nothing.
  void escape();
  /// Ends what goes on and closes the window. Nothing is sent.
  void close();

  /// The operator ends the program: asks whether unsaved edits go to the receiver or are dropped.
  /// False where he would rather go on.
  bool offerToSave();
  /// The program ends: returns when the file is written that is under way, and edits are kept in
  /// one that the receiver has not got. Answers in words what the operator would have read of a
  /// file that could not be written, or where edits are of which he was not asked.
  Result<> end();
  /// Writes what could not be written into another file. Answers in words why it could not.
  Result<> saveTo(const std::string& file) const;

  /// A file was written beside the window.
  void deliver();
  /// Returns when no file is being written any more.
  void finishWriting() { work_.wait(); }
  void tick(Instant now);
  Instant nextDue() const;

  /// Where the window goes, in pixels: under the main window, with a gap of 40 twips, or directly
  /// above it where the screen ends.
  static Global::Point placed(const Global::Area& main, Global::Size own, std::int32_t screenHeight,
                              int dpi);

 private:
  enum class Purpose { Open, Reload, Backup };

  void getIt() override;
  void emptyChannel() override;
  void select(Channel channel) override;
  void edited() override { changed(); }

  void moved(Index rx);
  void startReading(Purpose purpose);
  void readingEnded();
  void readingFailed(const std::string& why);
  void closeAfterReload(const std::string& why);
  void rescued(const std::string& why, const ChannelTask& written);

  void Save_Click();
  void Clear_Click();
  void Export_Click();
  void Import_Click();
  void clearChannels(const std::string& kept);
  void leaveChannel();
  /// What is done when a task has ended; what it says is shown.
  using OnTaskDone = std::function<void(const ChannelTask&)>;
  void start(std::unique_ptr<ChannelTask> task, OnTaskDone then = {});
  void runTask();
  void taskEnded();
  void taskStopped(const std::string& why);

  bool busy() const { return reading_.running() || task_; }
  void say(std::string words);
  void changed();
  std::string text(const ChannelRows& rows);
  ChannelRows workingRows() const;
  static ChannelRows stored(ChannelRows rows);
  void endWork();
  std::string endFile();
  ChannelRows edits();
  std::filesystem::path datedFile() const;

  ReceiverComponent& component_;
  FileServices files_;
  std::shared_ptr<FileSteps> disk_;
  Owner owner_;
  ChannelView view_;
  ChannelTable table_;
  Grid grid_;
  ChannelReading reading_;
  std::function<void()> listener_;
  Index nReceiver_ = 0;
  std::string name_;      ///< of the receiver
  bool gone_ = false;     ///< the receiver is no longer the one that was opened
  bool unsaved_ = false;  ///< when it was last at rest, the table had what the receiver has not got
  Purpose purpose_ = Purpose::Open;
  ChannelRows backup_;
  ChannelRows rescue_;    ///< the table with unsaved edits, while it is read over
  bool dropped_ = false;  ///< the operator gave the unsaved edits up when he ended the program
  std::string last_;      ///< what the last file was to hold
  std::unique_ptr<ChannelTask> task_;
  OnTaskDone onTaskDone_;
  Instant taskDue_ = kNever;
  WorkBeside work_;  ///< last: its jobs end first
};

}  // namespace kelvane
