#include <winsock2.h>

#include "tests/wine/real_rigctld.h"

#include <filesystem>
#include <fstream>
#include <iterator>

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

/// Runs a line in the host's shell.
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

std::string hostOutput(const std::string& command) {
  // A name of its own: one that took too long may still be read.
  static int count = 0;
  const std::string name = "/tmp/kelvane-command-" + std::to_string(GetCurrentProcessId()) + "-" +
                           std::to_string(++count);
  // From a file, since quotation marks mean something to Windows too. A program of the host's
  // cannot be waited for: what it printed gets its name when it is whole.
  std::ofstream("Z:" + name, std::ios::binary) << command << "\n";
  const std::string printed = name + ".out", growing = name + ".part";
  shell("sh " + name + " >" + growing + " 2>&1 </dev/null; mv " + growing + " " + printed);
  eventually([&] { return std::filesystem::exists("Z:" + printed); }, 30000);
  std::ifstream file("Z:" + printed, std::ios::binary);
  const std::string text{std::istreambuf_iterator<char>(file), {}};
  file.close();
  shell("rm -f " + name + " " + printed);
  return text;
}

LineClient::LineClient(int port) : socket_(socket(AF_INET, SOCK_STREAM, 0)) {
  const sockaddr_in address = loopback(port);
  const DWORD patience = 2000;
  setsockopt(socket_, SOL_SOCKET, SO_RCVTIMEO, reinterpret_cast<const char*>(&patience),
             sizeof patience);
  connect(socket_, reinterpret_cast<const sockaddr*>(&address), sizeof address);
}

LineClient::~LineClient() { closesocket(socket_); }

std::string LineClient::ask(const std::string& command) const {
  const std::string line = command + "\n";
  send(socket_, line.data(), static_cast<int>(line.size()), 0);
  std::string reply;
  for (char c = 0; reply.size() < 200 && recv(socket_, &c, 1, 0) == 1 && c != '\n';) reply += c;
  return reply;
}

bool LineClient::closed() const {
  char c = 0;
  const int got = recv(socket_, &c, 1, 0);
  return got == 0 || (got < 0 && WSAGetLastError() != WSAETIMEDOUT);
}

RealRigctld::RealRigctld(int port, std::string words)
    : port_(port),
      words_(std::move(words)),
      pidFile_("/tmp/kelvane-rigctld-" + std::to_string(port)) {}

RealRigctld::~RealRigctld() {
  signal("KILL");
  shell("rm -f " + pidFile_);
}

bool RealRigctld::start() {
  shell("rigctld " + words_ + " -T 127.0.0.1 -t " + std::to_string(port_) +
        " </dev/null >/dev/null 2>&1 & echo $! > " + pidFile_);
  return eventually([this] { return !ask("f").empty(); });
}

void RealRigctld::signal(const std::string& name) {
  shell("kill -" + name + " $(cat " + pidFile_ + ") 2>/dev/null");
  Sleep(100);
}

std::string RealRigctld::ask(const std::string& command) const {
  return LineClient(port_).ask(command);
}

}  // namespace kelvane::wine
