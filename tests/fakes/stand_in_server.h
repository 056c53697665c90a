#pragma once

#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

#include <atomic>
#include <chrono>
#include <functional>
#include <mutex>
#include <optional>
#include <set>
#include <string>
#include <thread>
#include <utility>
#include <vector>

namespace kelvane::fakes {

/// A TCP server on loopback, with a script for what it does on each connection.
class StandInServer {
 public:
  /// One connection, as its script sees it. Its calls block.
  class Connection {
   public:
    Connection(int handle, std::function<void()> end) : handle_(handle), end_(std::move(end)) {}
    ~Connection() { close(); }

    /// The next line, without its end; none when the connection is over.
    std::optional<std::string> line() {
      for (;;) {
        const auto end = buffer_.find('\n');
        if (end != std::string::npos) {
          auto line = buffer_.substr(0, end);
          buffer_.erase(0, end + 1);
          return line;
        }
        char bytes[4096];
        const auto count = ::recv(handle_, bytes, sizeof bytes, 0);
        if (count <= 0) return std::nullopt;
        buffer_.append(bytes, static_cast<std::size_t>(count));
      }
    }
    /// Reads on to a piece that ends in this byte, and answers how many bytes came.
    std::size_t skipTo(char last) {
      std::size_t came = std::exchange(buffer_, {}).size();
      char bytes[65536];
      for (ssize_t count = 1; count > 0;) {
        count = ::recv(handle_, bytes, sizeof bytes, 0);
        if (count > 0) came += static_cast<std::size_t>(count);
        if (count > 0 && bytes[count - 1] == last) break;
      }
      return came;
    }
    /// Answers false when the connection is over.
    bool write(const std::string& bytes) {
      return ::send(handle_, bytes.data(), bytes.size(), MSG_NOSIGNAL) >= 0;
    }
    void close() {
      if (end_) std::exchange(end_, nullptr)();
    }
    /// Closes so that the other side gets a reset.
    void reset() {
      const linger at_once{1, 0};
      ::setsockopt(handle_, SOL_SOCKET, SO_LINGER, &at_once, sizeof at_once);
      close();
    }

   private:
    int handle_;
    std::function<void()> end_;
    std::string buffer_;
  };
  using Script = std::function<void(Connection&)>;

  explicit StandInServer(Script script, int backlog = 16) : script_(std::move(script)) {
    listener_ = ::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
    sockaddr_in where{};
    where.sin_family = AF_INET;
    where.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    ::bind(listener_, reinterpret_cast<sockaddr*>(&where), sizeof where);
    socklen_t size = sizeof where;
    ::getsockname(listener_, reinterpret_cast<sockaddr*>(&where), &size);
    port_ = ntohs(where.sin_port);
    ::listen(listener_, backlog);
    if (script_) acceptor_ = std::thread([this] { accept(); });
  }
  ~StandInServer() {
    ::shutdown(listener_, SHUT_RDWR);
    if (acceptor_.joinable()) acceptor_.join();
    {
      const std::lock_guard lock(mutex_);
      for (const int handle : open_) ::shutdown(handle, SHUT_RDWR);
    }
    for (auto& thread : threads_) thread.join();
    ::close(listener_);
  }
  StandInServer(const StandInServer&) = delete;
  StandInServer& operator=(const StandInServer&) = delete;

  int port() const { return port_; }
  int connections() const { return connections_; }

 private:
  void accept() {
    for (;;) {
      const int handle = ::accept(listener_, nullptr, nullptr);
      if (handle < 0) return;
      ++connections_;
      {
        const std::lock_guard lock(mutex_);
        open_.insert(handle);
      }
      threads_.emplace_back([this, handle] {
        Connection connection(handle, [this, handle] {
          const std::lock_guard lock(mutex_);
          open_.erase(handle);
          ::close(handle);
        });
        script_(connection);
      });
    }
  }

  Script script_;
  int listener_ = -1;
  int port_ = 0;
  std::atomic<int> connections_ = 0;
  std::mutex mutex_;
  std::set<int> open_;
  std::vector<std::thread> threads_;
  std::thread acceptor_;
};

}  // namespace kelvane::fakes
