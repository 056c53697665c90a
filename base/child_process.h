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

  /// Starts what the line says, after ending what ran before: a program, in quotes where its name
  /// holds blanks, and the words for it. Answers in words why it cannot be started; empty when it
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
