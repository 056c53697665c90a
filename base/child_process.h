#pragma once

#include <memory>
#include <string>

namespace kelvane {

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
  /// those of the search path. Answers in words why it cannot be started; empty when it
  /// runs. To be called on a thread that lasts as long as the program is to run.
  std::string start(const std::string& line);
  /// Ends it at once, whatever it does; nothing where none runs.
  void end();
  bool running();

 private:
  struct Native;
  std::unique_ptr<Native> native_;
};

}  // namespace kelvane
