#pragma once

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <string>
#include <tuple>
#include <vector>

#include "contract/components.h"
#include "contract/win32/com.h"
#include "contract/win32/com_ptr.h"

namespace kelvane::test {

/// The thread's membership of COM, as the panel's thread has it.
class Apartment {
 public:
  Apartment() { CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED); }
  Apartment(const Apartment&) = delete;
  Apartment& operator=(const Apartment&) = delete;
  ~Apartment() { CoUninitialize(); }
};

class ComTest : public ::testing::Test {
 private:
  Apartment apartment_;
};

/// Lets messages run until the condition holds; false when it does not within ten seconds.
template <class Condition>
bool pumpUntil(Condition condition) {
  const ULONGLONG end = GetTickCount64() + 10'000;
  for (;;) {
    for (MSG message; PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE);) DispatchMessageW(&message);
    if (condition()) return true;
    if (GetTickCount64() >= end) return false;
    // In short waits: not all that is waited for sends a message.
    MsgWaitForMultipleObjects(0, nullptr, FALSE, 10, QS_ALLINPUT);
  }
}

/// Lets the messages that wait now run.
inline void pump() {
  pumpUntil([] { return true; });
}

/// A folder that lasts as long as its test.
class TemporaryFolder {
 public:
  TemporaryFolder() {
    wchar_t base[MAX_PATH], name[MAX_PATH];
    GetTempPathW(MAX_PATH, base);
    GetTempFileNameW(base, L"kel", 0, name);
    path_ = std::filesystem::path(name).concat(L" f\u00f6lder");
    std::filesystem::remove(name);
    std::filesystem::create_directory(path_);
  }
  TemporaryFolder(const TemporaryFolder&) = delete;
  TemporaryFolder& operator=(const TemporaryFolder&) = delete;
  ~TemporaryFolder() {
    std::error_code ignored;
    std::filesystem::remove_all(path_, ignored);
  }

  std::filesystem::path operator/(const std::wstring& name) const { return path_ / name; }
  const std::filesystem::path& path() const { return path_; }
  void write(const std::wstring& name, const std::string& content) const {
    std::ofstream(path_ / name, std::ios::binary) << content;
  }

 private:
  std::filesystem::path path_;
};

inline std::string fileContent(const std::filesystem::path& file) {
  std::ifstream in(file, std::ios::binary);
  return {std::istreambuf_iterator<char>(in), {}};
}

/// The user's classes for the machine too, for as long as it lives: Wine does not heed those of the
/// user.
class ClassesForMachine {
 public:
  ClassesForMachine() {
    for (const wchar_t* part : {L"", L"CLSID\\", L"Interface\\", L"TypeLib\\"}) copy(part);
  }
  ClassesForMachine(const ClassesForMachine&) = delete;
  ClassesForMachine& operator=(const ClassesForMachine&) = delete;
  ~ClassesForMachine() {
    for (const std::wstring& key : copied_) RegDeleteTreeW(HKEY_LOCAL_MACHINE, key.c_str());
  }

 private:
  void copy(const std::wstring& part) {
    HKEY users = nullptr;
    RegOpenKeyExW(HKEY_CURRENT_USER, (kClasses + part).c_str(), 0, KEY_READ, &users);
    wchar_t name[256];
    for (DWORD i = 0, size = 256; RegEnumKeyExW(users, i, name, &size, 0, 0, 0, 0) == ERROR_SUCCESS;
         ++i, size = 256) {
      const std::wstring key = kClasses + part + name;
      HKEY there = nullptr;
      DWORD how = 0;
      RegCreateKeyExW(HKEY_LOCAL_MACHINE, key.c_str(), 0, nullptr, 0, KEY_ALL_ACCESS, nullptr,
                      &there, &how);
      if (how == REG_CREATED_NEW_KEY && RegCopyTreeW(users, name, there) == ERROR_SUCCESS)
        copied_.push_back(key);
      RegCloseKey(there);
    }
    RegCloseKey(users);
  }

  const std::wstring kClasses = L"Software\\Classes\\";
  std::vector<std::wstring> copied_;
};

// Arguments that cannot be mistaken for one another: by value, by width, by place in the list. Of
// two rounds, each flag is true in one.

template <class Value>
Value distinct(int place, int round);
template <>
inline Index distinct(int place, int round) {
  return static_cast<Index>(place + 2 + round);
}
template <>
inline Long distinct(int place, int round) {
  return (round ? -1 : 1) * (70'000 * place + 5);
}
template <>
inline Flag distinct(int place, int round) {
  return (place + round) % 2 == 0;
}
template <>
inline Text distinct(int place, int round) {
  return "T\u00e4xt \u2192 " + std::to_string(place + round);
}

template <class... Params>
std::tuple<Params...> distinctArguments([[maybe_unused]] int round) {
  return [=]<std::size_t... Places>(std::index_sequence<Places...>) {
    return std::tuple<Params...>(distinct<Params>(static_cast<int>(Places) + 1, round)...);
  }
  (std::index_sequence_for<Params...>());
}

inline std::string shown(Flag value) { return value ? "true" : "false"; }
inline std::string shown(Index value) { return std::to_string(value) + "s"; }
inline std::string shown(Long value) { return std::to_string(value); }
inline std::string shown(const Text& value) { return '"' + value + '"'; }

/// "SetRxBfo(3s, 70005)".
template <class... Args>
std::string callText(const char* name, const Args&... args) {
  std::string text;
  ((text += (text.empty() ? "" : ", ") + shown(args)), ...);
  return std::string(name) + "(" + text + ")";
}

/// What the fake components do with a call: remember it, and answer what they are told to.
class FakeCalls {
 public:
  std::string last;
  Outcome outcome = Outcome::Done;
  bool throws = false;
  Long number = 0;
  Flag flag = true;
  Text text = "Gr\u00fc\u00dfe \u2192";
  FrqRecord record{2, 7, 6'070'000};

  template <class... Args>
  Outcome called(const char* name, const Args&... args) {
    last = callText(name, args...);
    if (throws) throw std::runtime_error("out of order");
    return outcome;
  }
  template <class Result>
  Answer<Result> answered(Outcome how, Result fallback) const {
    if (how != Outcome::Done) return Answer<Result>::failed(fallback, how);
    if constexpr (std::is_same_v<Result, Flag>) return flag;
    if constexpr (std::is_same_v<Result, Long>) return number;
    if constexpr (std::is_same_v<Result, Text>) return text;
    if constexpr (std::is_same_v<Result, FrqRecord>) return record;
  }
};

}  // namespace kelvane::test
