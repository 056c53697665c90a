#include <winsock2.h>

#include "tests/wine/real_rigctld.h"

#include "base/win32/utf16.h"
#include "tests/wine/running_panel.h"

namespace kelvane::wine {

namespace {

struct Sockets {
  Sockets() {
    WSADATA data;
    WSAStartup(MAKEWORD(2, 2), &data);
  }
};

sockaddr_in loopback(int port) {
  static const Sockets sockets;
  sockaddr_in address{};
  address.sin_family = AF_INET;
  address.sin_port = htons(static_cast<u_short>(port));
  address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
  return address;
}

/// Runs a line in the host's shell and waits for the shell's end.
void shell(const std::string& line) {
  std::wstring command = L"sh -c \"" + wide(line) + L"\"";
  STARTUPINFOW start{};
  start.cb = sizeof start;
  PROCESS_INFORMATION process{};
  if (!CreateProcessW(L"\\\\?\\unix\\bin\\sh", command.data(), nullptr, nullptr, FALSE, 0, nullptr,
                      nullptr, &start, &process))
    return;
  WaitForSingleObject(process.hProcess, 3000);
  CloseHandle(process.hThread);
  CloseHandle(process.hProcess);
}

}  // namespace

int freePort() {
  sockaddr_in address = loopback(0);
  const SOCKET probe = socket(AF_INET, SOCK_STREAM, 0);
  bind(probe, reinterpret_cast<sockaddr*>(&address), sizeof address);
  int size = sizeof address;
  getsockname(probe, reinterpret_cast<sockaddr*>(&address), &size);
  closesocket(probe);
  return ntohs(address.sin_port);
}

RealRigctld::RealRigctld(int port)
    : port_(port), pidFile_("/tmp/kelvane-rigctld-" + std::to_string(port)) {}

RealRigctld::~RealRigctld() {
  signal("KILL");
  shell("rm -f " + pidFile_);
}

bool RealRigctld::start() {
  shell("rigctld -m 1 -T 127.0.0.1 -t " + std::to_string(port_) +
        " </dev/null >/dev/null 2>&1 & echo $! > " + pidFile_);
  return eventually([this] { return !ask("f").empty(); });
}

void RealRigctld::signal(const std::string& name) {
  shell("kill -" + name + " $(cat " + pidFile_ + ") 2>/dev/null");
  Sleep(100);
}

std::string RealRigctld::ask(const std::string& command) const {
  const sockaddr_in address = loopback(port_);
  const SOCKET client = socket(AF_INET, SOCK_STREAM, 0);
  std::string reply;
  const DWORD patience = 2000;
  setsockopt(client, SOL_SOCKET, SO_RCVTIMEO, reinterpret_cast<const char*>(&patience),
             sizeof patience);
  if (connect(client, reinterpret_cast<const sockaddr*>(&address), sizeof address) == 0) {
    const std::string line = command + "\n";
    send(client, line.data(), static_cast<int>(line.size()), 0);
    char c = 0;
    while (reply.size() < 200 && recv(client, &c, 1, 0) == 1 && c != '\n') reply += c;
  }
  closesocket(client);
  return reply;
}

}  // namespace kelvane::wine
