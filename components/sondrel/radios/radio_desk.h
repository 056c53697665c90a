#pragma once

#include <condition_variable>
#include <filesystem>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include "base/program_output.h"
#include "components/sondrel/radios/radio_models.h"
#include "components/sondrel/radios/serial_ports.h"

namespace kelvane::sondrel {

/// The models that a rigctld knows, with what they are sought by.
struct ModelList {
  explicit ModelList(std::vector<RadioModel> all) : models(std::move(all)), search(models) {}
  ModelList(const ModelList&) = delete;
  ModelList& operator=(const ModelList&) = delete;
  const std::vector<RadioModel> models;
  const ModelSearch search;
};

/// What is known at this moment for whoever adds a radio.
struct DeskState {
  bool looking = true;  ///< for a rigctld, or asking it
  std::string program;  ///< the rigctld in use, with its folder; empty where there is none
  std::string version;  ///< "Hamlib 4.7.2"
  std::string remark;   ///< why there are no models, or what to mind, in words
  std::shared_ptr<const ModelList> models;
  std::int32_t factsOf = 0;  ///< the model that `facts` belong to; 0 for none
  ModelFacts facts;
  std::vector<SerialPort> ports;
};

/// Looks after all that takes time for the window that adds a radio, on a thread of its own: finds
/// rigctld, asks it for its models and what they can do, and watches the ports. Every function may
/// be called from any thread and returns at once; the destructor ends a rigctld that is asked.
class RadioDesk {
 public:
  struct Sources {
    SerialPorts ports;
    /// The programs rigctld that there are, the best first.
    std::function<std::vector<std::filesystem::path>()> programs;
    /// Remembers the one that the operator has shown.
    std::function<void(const std::filesystem::path&)> remember;
    /// Runs a program to its end (see outputOf).
    std::function<Result<std::string>(const std::string& line, milliseconds limit,
                                      const std::function<bool()>& stop)>
        run;
  };
  explicit RadioDesk(Sources sources);
  ~RadioDesk();
  RadioDesk(const RadioDesk&) = delete;
  RadioDesk& operator=(const RadioDesk&) = delete;

  /// Called on any thread when the state has changed; it only asks somebody to look. Nobody is
  /// called any more when this returns.
  void setListener(std::function<void()> onChange);

  DeskState state() const;
  /// Counts the changes of the state.
  std::uint32_t changes() const;

  /// Looks for rigctld and reads its models, unless it did and the file is the same.
  void look();
  /// The operator shows a rigctld.
  void show(const std::filesystem::path& program);
  /// Asks what a model can do.
  void ask(std::int32_t model);
  /// Whether the ports are to be watched.
  void watchPorts(bool watch);

 private:
  struct Wanted {
    bool look = false;
    std::optional<std::filesystem::path> shown;
    std::int32_t model = 0;
  };

  void run();
  void turn(const Wanted& wanted);
  void readPorts();
  void readBestProgram();
  std::string readProgram(const std::filesystem::path& program);
  void endLooking(const std::string& remark);
  Result<std::string> takeProgram(const std::filesystem::path& program);
  void readFacts(std::int32_t model);
  Result<std::string> output(const std::string& program, const std::string& words);
  template <class Change>
  void change(Change change);
  bool stopped() const;

  const Sources sources_;
  mutable std::mutex mutex_;
  std::condition_variable wake_;
  bool stop_ = false;
  bool watching_ = false;
  Wanted wanted_;
  DeskState state_;
  std::uint32_t changes_ = 0;
  std::function<void()> onChange_;
  // Of the thread alone:
  std::filesystem::path readFrom_;
  std::filesystem::file_time_type readAt_;
  std::thread thread_;  ///< last: it uses everything above
};

}  // namespace kelvane::sondrel
