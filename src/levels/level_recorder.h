#pragma once

#include <array>
#include <cstdint>
#include <filesystem>
#include <functional>
#include <memory>
#include <string>

#include "base/file_saver.h"
#include "levels/level_listener.h"
#include "ui/timer.h"

namespace kelvane {

/// Writes every level to a file, one for each day, in a folder of their own. Writing goes on beside
/// the window. Only whole lines are in a file: what a killed program or a full disk left of a line
/// is taken away. Where all files together would be larger than the limit, the oldest days go;
/// where a single day is, or the disk takes nothing, recording stops and says so once.
class LevelRecorder : public LevelListener {
 public:
  struct Services {
    FileSaver& saver;
    std::filesystem::path folder;            ///< for the files; made when needed
    std::function<std::string(Index)> name;  ///< of a receiver
    std::function<void(bool)> keepAwake;     ///< whether the computer may not sleep
  };
  static constexpr std::uintmax_t kLimit = 2'000'000'000;

  explicit LevelRecorder(Services services, std::uintmax_t limit = kLimit);
  ~LevelRecorder() override;

  void start(Instant now);
  /// What was heard so far is written.
  void stop();
  bool running() const { return running_; }
  const std::filesystem::path& folder() const { return services_.folder; }

  void heard(Index rx, WallTime utc, Hz frequency, Long level) override;
  /// Names of receivers may have changed.
  void receiversChanged() { names_.fill({}); }
  void tick(Instant now);
  Instant nextDue() const { return writing_.due(); }
  /// Why recording stopped by itself, in words, once; else empty.
  std::string takeTrouble();

 private:
  struct Shared;

  void write();
  void fail(const std::string& why);

  Services services_;
  std::uintmax_t limit_;
  std::shared_ptr<Shared> shared_;
  std::array<std::string, kMostReceivers> names_;
  Timer writing_;
  std::string lines_;
  std::string day_;  ///< of the lines that wait
  std::string trouble_;
  std::uint64_t jobs_ = 0;
  bool running_ = false;
};

}  // namespace kelvane
