#pragma once

#include <arpa/inet.h>
#include <fcntl.h>
#include <netinet/in.h>
#include <signal.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>
#include <thread>
#include <vector>

namespace kelvane::fakes {

/// A real rigctld with its dummy radio on a free port of loopback, started and ended by the test.
class RealRigctld {
 public:
  static bool installed() {
    std::istringstream path(std::getenv("PATH") ? std::getenv("PATH") : "");
    for (std::string folder; std::getline(path, folder, ':');) {
      if (std::filesystem::exists(std::filesystem::path(folder) / "rigctld")) return true;
    }
    return false;
  }

  explicit RealRigctld(std::vector<std::string> options = {}) : options_(std::move(options)) {
    const int probe = ::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
    auto where = loopback(0);
    ::bind(probe, reinterpret_cast<sockaddr*>(&where), sizeof where);
    socklen_t size = sizeof where;
    ::getsockname(probe, reinterpret_cast<sockaddr*>(&where), &size);
    port_ = ntohs(where.sin_port);
    ::close(probe);
    start();
  }
  ~RealRigctld() { kill(); }
  RealRigctld(const RealRigctld&) = delete;
  RealRigctld& operator=(const RealRigctld&) = delete;

  int port() const { return port_; }

  /// Starts it, also again after kill(); returns when it listens.
  void start() {
    std::vector<std::string> words = {
        "rigctld", "-m", "1", "-T", "127.0.0.1", "-t", std::to_string(port_)};
    words.insert(words.end(), options_.begin(), options_.end());
    std::vector<char*> arguments;
    for (auto& word : words) arguments.push_back(word.data());
    arguments.push_back(nullptr);
    process_ = ::fork();
    if (process_ == 0) {
      const int nowhere = ::open("/dev/null", O_RDWR);
      for (int stream = 0; stream < 3; ++stream) ::dup2(nowhere, stream);
      ::execvp("rigctld", arguments.data());
      ::_exit(127);
    }
    for (int i = 0; i < 500 && ask("\\chk_vfo").empty(); ++i) {
      std::this_thread::sleep_for(std::chrono::milliseconds(10));
    }
  }
  void kill() {
    if (process_ <= 0) return;
    ::kill(process_, SIGKILL);
    ::waitpid(process_, nullptr, 0);
    process_ = 0;
  }
  void stop() { ::kill(process_, SIGSTOP); }
  void go() { ::kill(process_, SIGCONT); }

  /// Another client's command, and the first line of the reply; empty when nobody answers.
  std::string ask(const std::string& command) const { return askAt(port_, command); }
  static std::string askAt(int port, const std::string& command) {
    const int client = ::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
    const auto where = loopback(port);
    const auto line = command + "\n";
    std::string reply;
    if (::connect(client, reinterpret_cast<const sockaddr*>(&where), sizeof where) == 0 &&
        ::send(client, line.data(), line.size(), MSG_NOSIGNAL) > 0) {
      for (char byte = 0; ::recv(client, &byte, 1, 0) == 1 && byte != '\n';) reply += byte;
    }
    ::close(client);
    return reply;
  }

  /// Kills this process's own child that has the port in its command line.
  static void killWhoListensAt(int port) {
    const auto word = std::to_string(port);
    for (const auto& entry : std::filesystem::directory_iterator("/proc")) {
      std::ifstream stat(entry.path() / "stat"), line(entry.path() / "cmdline");
      std::string words, id, name, state, parent;
      stat >> id >> name >> state >> parent;
      std::getline(line, words);
      if (parent == std::to_string(::getpid()) && words.find(word) != std::string::npos) {
        ::kill(std::stoi(id), SIGKILL);
      }
    }
  }

 private:
  static sockaddr_in loopback(int port) {
    sockaddr_in where{};
    where.sin_family = AF_INET;
    where.sin_port = htons(static_cast<std::uint16_t>(port));
    where.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    return where;
  }

  std::vector<std::string> options_;
  int port_ = 0;
  pid_t process_ = 0;
};

}  // namespace kelvane::fakes
