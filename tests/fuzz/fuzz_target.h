#pragma once

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <map>
#include <string>
#include <string_view>

namespace kelvane::fuzz {

/// What is done with an input; a promise that is broken ends the program.
using Target = void (*)(std::string_view input);

/// The targets of this program by their names, for whoever replays what was kept.
inline std::map<std::string, Target>& targets() {
  static std::map<std::string, Target> all;
  return all;
}

struct Registered {
  Registered(const char* name, Target target) { targets()[name] = target; }
};

/// Ends the program with these words where a promise is broken.
inline void promise(bool kept, const std::string& words) {
  if (kept) return;
  std::fprintf(stderr, "Broken: %s\n", words.c_str());
  std::abort();
}

}  // namespace kelvane::fuzz

/// Begins the function that a fuzzer, or the replay of what it found, calls with each `input`. One
/// for each source file; the name is the file's.
#ifdef KELVANE_FUZZER
#define FUZZ_TARGET(name)                                                             \
  static void name(std::string_view input);                                           \
  extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) { \
    name({reinterpret_cast<const char*>(data), size});                                \
    return 0;                                                                         \
  }                                                                                   \
  static void name(std::string_view input)
#else
#define FUZZ_TARGET(name)                                                 \
  static void name(std::string_view input);                               \
  static const kelvane::fuzz::Registered name##Registered(#name, ::name); \
  static void name(std::string_view input)
#endif
