#pragma once

#include <cstdint>
#include <string>

namespace kelvane::wine {

/// A TCP port of this machine that nobody listens on.
int freePort();

/// What a program of the host's prints.
std::string hostOutput(const std::string& command);

/// A program of one's own at a port of loopback that speaks to it in lines.
class LineClient {
 public:
  explicit LineClient(int port);
  ~LineClient();
  LineClient(const LineClient&) = delete;
  LineClient& operator=(const LineClient&) = delete;

  /// The first line of the reply; empty where the other end answers nothing within two seconds.
  std::string ask(const std::string& command) const;
  /// Whether the other end closed it, within two seconds.
  bool closed() const;

 private:
  std::uintptr_t socket_;
};

/// A real radio server on loopback, with its dummy radio unless its words say otherwise: a program
/// of the host's own, started, stopped and ended through its shell.
class RealRigctld {
 public:
  explicit RealRigctld(int port, std::string words = "-m 1");
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
  std::string words_;
  std::string pidFile_;
};

}  // namespace kelvane::wine
