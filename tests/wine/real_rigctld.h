#pragma once

#include <string>

namespace kelvane::wine {

/// A TCP port of this machine that nobody listens on.
int freePort();

/// A real radio server on loopback with its dummy radio: a program of the host's own, started,
/// stopped and ended through its shell.
class RealRigctld {
 public:
  explicit RealRigctld(int port);
  ~RealRigctld();
  RealRigctld(const RealRigctld&) = delete;
  RealRigctld& operator=(const RealRigctld&) = delete;

  /// Waits until it answers.
  bool start();
  /// Sends a signal by name: KILL, STOP, CONT.
  void signal(const std::string& name);

  /// What it answers another client: the first line of the reply.
  std::string ask(const std::string& command) const;

 private:
  int port_;
  std::string pidFile_;
};

}  // namespace kelvane::wine
