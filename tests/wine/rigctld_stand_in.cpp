#include <winsock2.h>

#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <iterator>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

#include "tests/fakes/fake_rig.h"

// Stands for rigctld.exe in the tests, where the real one's serial ports cannot be: prints its
// lists and its troubles in its words, and serves a radio. What is at a port says the port's name:
// COM5 a radio at 19200, COM7 nothing, COM8 another program, COM9 a radio that is switched off.

namespace {

using Words = std::vector<std::string>;

std::string after(const Words& words, const std::string& option) {
  for (std::size_t i = 0; i + 1 < words.size(); ++i)
    if (words[i] == option) return words[i + 1];
  return {};
}

bool has(const Words& words, const std::string& option) {
  for (const auto& word : words)
    if (word == option) return true;
  return false;
}

void printModel(int number, const char* maker, const std::string& name) {
  std::printf("%6d  %-22s %-23s %-15s %-12s%s\n", number, maker, name.c_str(), "20250517.14",
              "Stable", "RIG_MODEL_X");
}

/// A recorded list, where the environment names one; else as many as it asks for, for whoever
/// measures a long list.
int list() {
  if (const char* recorded = std::getenv("STAND_IN_LIST")) {
    std::ifstream file(recorded, std::ios::binary);
    std::fputs(std::string(std::istreambuf_iterator<char>(file), {}).c_str(), stdout);
    return 0;
  }
  std::printf(" Rig #  %-22s %-23s %-15s %-12s%s\n", "Mfg", "Model", "Version", "Status", "Macro");
  printModel(1, "Hamlib", "Dummy");
  printModel(1035, "Yaesu", "FT-991");
  printModel(3073, "Icom", "IC-7300");
  const char* more = std::getenv("STAND_IN_MODELS");
  for (int i = 0; more && i < std::atoi(more); ++i)
    printModel(50'000 + i, "Acme", "R-" + std::to_string(i));
  return 0;
}

int describe(const std::string& model) {
  if (model == "99999") return 2;
  std::printf("Caps dump for model: %s\nModel name:\tIC-7300\nMfg name:\tIcom\n", model.c_str());
  std::printf("Port type:\tRS-232\nSerial speed: 4800..115200 baud, 8N1, ctrl=NONE\n");
  return 0;
}

/// The words for a port that cannot be opened; empty for one that can.
std::string trouble(const Words& words) {
  const std::string port = after(words, "-r"), speed = after(words, "-s");
  if (after(words, "-m") == "99999") return "Unknown rig num 99999, or initialization error.\n";
  const std::string end = "\nIO error\n " + port + " No such file or directory \n";
  if (port == "COM7") return "serial_open: serial port COM7 does not exist\n" + end;
  if (port == "COM8") return "serial_open: Unable to open COM8 - Permission denied\n" + end;
  const bool answers = port != "COM9" && (speed.empty() || speed == "19200");
  return answers ? "" : "read_block(): Timed out 0.4 seconds after 0 chars\n" + end;
}

void replace(std::string& text, const std::string& words, const std::string& by) {
  if (const auto place = text.find(words); place != text.npos)
    text.replace(place, words.size(), by);
}

/// Answers one client; the radio is one for all of them.
void serve(SOCKET client, kelvane::fakes::FakeRig& rig, std::mutex& mutex) {
  std::string line;
  for (char byte = 0; recv(client, &byte, 1, 0) == 1;) {
    if (byte != '\n') {
      line += byte;
      continue;
    }
    std::string reply;
    {
      const std::lock_guard lock(mutex);
      reply = rig.answer(line);
    }
    line.clear();
    replace(reply, "Model name:\tR-1", "Model name:\tIC-7300");
    replace(reply, "Mfg name:\tAcme", "Mfg name:\tIcom");
    send(client, reply.data(), static_cast<int>(reply.size()), 0);
  }
  closesocket(client);
}

int listenAt(int port) {
  WSADATA data;
  WSAStartup(MAKEWORD(2, 2), &data);
  const SOCKET listener = socket(AF_INET, SOCK_STREAM, 0);
  sockaddr_in where{};
  where.sin_family = AF_INET;
  where.sin_port = htons(static_cast<u_short>(port));
  where.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
  if (bind(listener, reinterpret_cast<sockaddr*>(&where), sizeof where) != 0) return 2;
  if (listen(listener, 4) != 0) return 3;
  kelvane::fakes::FakeRig rig(kelvane::fakes::FakeRig::Manner::Rigctld);
  std::mutex mutex;
  for (;;) {
    const SOCKET client = accept(listener, nullptr, nullptr);
    std::thread([client, &rig, &mutex] { serve(client, rig, mutex); }).detach();
  }
}

}  // namespace

int main(int count, char** arguments) {
  const Words words(arguments + 1, arguments + count);
  if (has(words, "--version")) return std::puts("rigctld Hamlib 4.7.2 stand-in") < 0;
  if (has(words, "-l")) return list();
  if (has(words, "-u")) return describe(after(words, "-m"));
  if (has(words, "-L"))
    return std::puts("civaddr: \"CI-V address\"\n\tDefault: 0, Value: 148\n\tRange: 0..255") < 0;
  if (const std::string fault = trouble(words); !fault.empty()) {
    std::fputs(fault.c_str(), stderr);
    std::fflush(stderr);
    if (after(words, "-m") == "99999") return 2;
    // The real one goes on trying, and listens meanwhile.
    Sleep(60'000);
    return 0;
  }
  return listenAt(std::atoi(after(words, "-t").c_str()));
}
