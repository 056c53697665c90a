#include "base/program_output.h"

#include <chrono>
#include <thread>

#include "base/child_process.h"

namespace kelvane {

Result<std::string> outputOf(const std::string& line, milliseconds limit,
                             const std::function<bool()>& stop) {
  constexpr milliseconds kLookEvery{5};
  constexpr std::size_t kMost = 2'000'000;
  ChildProcess program;
  if (const Result<> started = program.start(line, Written::Kept); !started)
    return started.failure();
  std::string output;
  const Instant end = std::chrono::steady_clock::now() + limit;
  for (;;) {
    const bool running = program.running();
    output += program.takeWritten();
    if (!running) return output;
    if (output.size() > kMost) return Failure{"It writes without an end."};
    if (std::chrono::steady_clock::now() >= end)
      return Failure{"It did not end within " + std::to_string(limit.count() / 1000) + " s."};
    if (stop()) return Failure{"Stopped."};
    std::this_thread::sleep_for(kLookEvery);
  }
}

}  // namespace kelvane
