#pragma once

#include <array>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

#include "base/file_saver.h"
#include "levels/level_recorder.h"
#include "overview/receiver_watch.h"
#include "overview/trace_lines.h"
#include "overview/window_place.h"
#include "settings/settings.h"
#include "ui/clipboard.h"
#include "ui/colours.h"
#include "ui/file_flows.h"
#include "ui/global.h"

namespace kelvane {

/// What a picture of the traces shows, as plain values; lengths are pixels of the plot.
struct TraceFrame {
  struct Trace {
    Index rx;
    std::vector<LevelSpan> columns;
    std::vector<LevelSpan> rolled;  ///< rolling mean and peak; empty where neither is shown
  };
  struct Tick {
    int at;
    std::string words;
  };
  struct Mark {
    int x;
    Index rx;
    std::string words;
  };
  LevelTime from = 0, to = 0;
  int width = 0, height = 0;
  LevelScale scale;
  int longestPause = 1;  ///< columns without a reading that a line crosses
  std::vector<Trace> traces;
  std::vector<Tick> times, levels;
  std::vector<Mark> marks;  ///< where a frequency changed
  int cursor = -1;          ///< column, -1 for none
  std::vector<std::string> cursorWords;
};

/// The window with the levels of several receivers over each other, and what compares them.
class Traces {
 public:
  struct Services {
    ReceiverComponent& receiver;
    ReceiverWatch& watch;
    LevelRecorder& recorder;
    SettingsStore& settings;
    Clipboard& clipboard;
    FileFlows& files;
    FileSaver& saver;
    std::function<Instant()> now;
    std::function<ColourChoice()> colours;
  };
  explicit Traces(const Services& services);

  ColourChoice colours() const { return services_.colours(); }
  int receivers() const;
  std::string name(Index rx) const { return services_.receiver.GetRxName(rx); }

  /// The picture of a plot of this size, at this moment.
  TraceFrame frame(int width, int height);
  /// Changes whenever `frame` would answer something else for a plot of this width.
  struct Version {
    LevelTime to = 0;
    unsigned changes = 0;
    bool operator==(const Version&) const = default;
  };
  Version version(int width);

  // What is shown.
  bool visible(Index rx) const { return visible_[rx]; }
  void toggleVisible(Index rx);
  void zoom(int direction);  ///< 1 shows a longer time
  bool paused() const { return end_.has_value(); }
  void pause(bool paused);
  /// Moves back (-1) or on (1) by a share of the span; at the present it runs on.
  void scroll(int direction);
  bool automaticScale() const { return automatic_; }
  void toggleScale();
  /// Moves the fixed scale by 10 dB.
  void shiftScale(int direction);
  bool showsPeak() const { return peak_; }
  void togglePeak();
  bool showsMean() const { return mean_; }
  void toggleMean();
  /// Puts the cursor on a column; -1 takes it away.
  void pointAt(int column, int width);
  void moveCursor(int columns, int width);

  // Comparison: of the reference with each other visible receiver.
  Index reference() const { return reference_; }
  void nextReference();
  std::string comparedWords() const;  ///< for how long: "60 s"
  void nextCompared();
  /// What is added to the levels of the reference, dB.
  double offset(Index rx) const { return offsets_[rx]; }
  void changeOffset(Index rx, double decibels);
  /// A line for each pair.
  std::vector<std::string> results();
  void copyResults();

  // Files.
  bool recording() const { return services_.recorder.running(); }
  void toggleRecording();
  void saveCsv();
  /// Asks for the name of a picture; empty where none was chosen.
  std::string askPictureName();
  /// Saves a picture's bytes; with none, says why there are none.
  void savePicture(const std::string& name, std::string bytes, const std::string& why);
  /// The last line: what was done last, else what is shown.
  std::string statusLine() const;
  void say(std::string words);
  /// Hears how the saving of a file ended.
  void tick();

  void receiversChanged(const ReceiverMoves& moves);

  WindowPlace startPlace(Global::Point owner) const;
  void leftAt(const WindowPlace& place);

 private:
  LevelTime step(int width) const;
  LevelTime endFor(int width);
  Result<> checkComparable(Index rx) const;
  void readOffsets();
  std::string offsetName(Index rx) const;
  void save(const std::string& file, const std::shared_ptr<ReplacedFile>& replaced,
            const std::string& done, std::function<std::string()> content);
  void addTimes(TraceFrame& frame) const;
  void addLevels(TraceFrame& frame) const;
  void addMarks(TraceFrame& frame) const;
  void addCursor(TraceFrame& frame) const;
  LevelScale automaticScale(const TraceFrame& frame) const;

  Services services_;
  std::array<bool, kMostReceivers> visible_;
  std::array<double, kMostReceivers> offsets_{};
  std::size_t span_;
  std::size_t compared_ = 1;
  std::optional<LevelTime> end_;
  std::optional<LevelTime> cursor_;
  bool automatic_, peak_, mean_;
  LevelScale scale_;
  Index reference_ = 0;
  unsigned changes_ = 0;
  std::string message_;  ///< of what was done, until another time is shown
  /// How a file was saved, told by the thread that wrote it.
  struct Saved {
    std::mutex mutex;
    std::string words;
  };
  std::shared_ptr<Saved> saved_ = std::make_shared<Saved>();
};

}  // namespace kelvane
