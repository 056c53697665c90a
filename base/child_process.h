#pragma once

#include <memory>
#include <string>

#include "base/result.h"

namespace kelvane {

/// What becomes of what a program writes to its streams.
enum class Written { Dropped, Kept };

/// A program that runs beside this one, without a window, and never outlives it.
class ChildProcess {
 public:
  ChildProcess();
  /// Ends the program.
  ~ChildProcess();
  ChildProcess(const ChildProcess&) = delete;
  ChildProcess& operator=(const ChildProcess&) = delete;

  /// Starts what the line says, after ending what ran before: a program (see programOf), and the
  /// words for it. On Windows a name without a folder is looked for in the system's folder and in
  /// those of the search path. Fails where it cannot be started. To be called on a thread that
  /// lasts as long as the program is to run.
  Result<> start(const std::string& line, Written written = Written::Dropped);
  /// Ends it at once, whatever it does; nothing where none runs.
  void end();
  bool running();
  /// What it wrote since the last call, also after its end; only where that is kept. To be called
  /// now and then: a program that writes much waits when nobody reads. Stays empty for a program
  /// that the system gives no pipe.
  std::string takeWritten();

 private:
  struct Native;
  std::unique_ptr<Native> native_;
};

}  // namespace kelvane
