#include <winsock2.h>

#include <cstdlib>
#include <string>

#include "tests/fakes/fake_rig.h"

// A radio server that a test has the program start: answers one client after the other at the port
// that is its only word, and ends only with its process.

int main(int count, char** words) {
  WSADATA data;
  if (count != 2 || WSAStartup(MAKEWORD(2, 2), &data) != 0) return 1;
  const SOCKET listener = socket(AF_INET, SOCK_STREAM, 0);
  sockaddr_in where{};
  where.sin_family = AF_INET;
  where.sin_port = htons(static_cast<u_short>(std::atoi(words[1])));
  where.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
  if (bind(listener, reinterpret_cast<sockaddr*>(&where), sizeof where) != 0) return 2;
  if (listen(listener, 4) != 0) return 3;
  kelvane::fakes::FakeRig rig(kelvane::fakes::FakeRig::Manner::Rigctld);
  for (;;) {
    const SOCKET client = accept(listener, nullptr, nullptr);
    std::string line;
    for (char byte = 0; recv(client, &byte, 1, 0) == 1;) {
      if (byte != '\n') {
        line += byte;
        continue;
      }
      const std::string reply = rig.answer(line);
      line.clear();
      send(client, reply.data(), static_cast<int>(reply.size()), 0);
    }
    closesocket(client);
  }
}
