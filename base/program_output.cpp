#include "base/program_output.h"

#include <thread>

#include "base/child_process.h"

namespace kelvane {

ProgramOutput outputOf(const std::string& line, milliseconds limit,
                       const std::function<bool()>& stop) {
  constexpr milliseconds kLookEvery{5};
  constexpr std::size_t kMost = 2'000'000;
  ChildProcess program;
  ProgramOutput output{{}, program.start(line, Written::Kept)};
  const Instant end = std::chrono::steady_clock::now() + limit;
  while (output.problem.empty()) {
    const bool running = program.running();
    output.text += program.takeWritten();
    if (!running) break;
    if (output.text.size() > kMost) output.problem = "It writes without an end.";
    if (std::chrono::steady_clock::now() >= end)
      output.problem = "It did not end within " + std::to_string(limit.count() / 1000) + " s.";
    if (stop()) output.problem = "Stopped.";
    std::this_thread::sleep_for(kLookEvery);
  }
  return output;
}

}  // namespace kelvane
