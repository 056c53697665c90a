#pragma once

#include <winsock2.h>

#include <windows.h>

#include <atomic>
#include <cstring>
#include <string>
#include <thread>

#include "benchmarks/table.h"
#include "benchmarks/wine/timing_board.h"
#include "tests/fakes/fake_rig.h"

namespace kelvane::bench {

/// A radio behind a server on loopback whose every command takes its time. Counts what it is asked
/// and the frequencies that it is told.
class SlowRadio {
 public:
  explicit SlowRadio(DWORD milliseconds) : milliseconds_(milliseconds) {
    WSADATA data;
    WSAStartup(MAKEWORD(2, 2), &data);
    listener_ = socket(AF_INET, SOCK_STREAM, 0);
    sockaddr_in where{};
    where.sin_family = AF_INET;
    where.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    int size = sizeof where;
    const bool bound = bind(listener_, reinterpret_cast<sockaddr*>(&where), size) == 0 &&
                       getsockname(listener_, reinterpret_cast<sockaddr*>(&where), &size) == 0 &&
                       listen(listener_, 1) == 0;
    must(bound, "a place for the radio's server");
    port_ = ntohs(where.sin_port);
    thread_ = std::thread([this] { serve(); });
  }
  ~SlowRadio() {
    closesocket(listener_);
    closesocket(client_);
    thread_.join();
    WSACleanup();
  }
  SlowRadio(const SlowRadio&) = delete;
  SlowRadio& operator=(const SlowRadio&) = delete;

  int port() const { return port_; }
  int frequenciesTold() const { return told_; }
  /// When the last of them arrived, by the performance counter.
  LONG64 toldAt() const { return toldAt_; }
  int metersAsked() const { return meters_; }
  /// How long it has been busy with commands so far, by the performance counter.
  LONG64 busy() const { return busy_; }
  /// Closes the connection; the next one is served again.
  void hangUp() { closesocket(client_); }

 private:
  void serve() {
    while ((client_ = accept(listener_, nullptr, nullptr)) != INVALID_SOCKET) talk();
  }

  void talk() {
    fakes::FakeRig rig(fakes::FakeRig::Manner::Rigctld);
    std::string waiting;
    char bytes[1024];
    for (int count = 0; (count = recv(client_, bytes, sizeof bytes, 0)) > 0;) {
      waiting.append(bytes, static_cast<std::size_t>(count));
      for (auto end = waiting.find('\n'); end != std::string::npos; end = waiting.find('\n')) {
        const std::string line = waiting.substr(0, end);
        waiting.erase(0, end + 1);
        const LONG64 came = counter();
        Sleep(milliseconds_);
        const std::size_t sets = rig.sets.size();
        const std::string reply = rig.answer(line);
        if (rig.sets.size() > sets && rig.sets.back().starts_with("F ")) {
          toldAt_ = came;
          ++told_;
        }
        if (line == "+l STRENGTH") ++meters_;
        send(client_, reply.data(), static_cast<int>(reply.size()), 0);
        busy_ += counter() - came;
      }
    }
  }

  DWORD milliseconds_;
  SOCKET listener_ = INVALID_SOCKET;
  std::atomic<SOCKET> client_ = INVALID_SOCKET;
  int port_ = 0;
  std::atomic<int> told_ = 0, meters_ = 0;
  std::atomic<LONG64> toldAt_ = 0, busy_ = 0;
  std::thread thread_;
};

}  // namespace kelvane::bench
