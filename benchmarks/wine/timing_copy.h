#pragma once

#include <filesystem>

#include "benchmarks/wine/timing_board.h"
#include "tests/wine/instance.h"
#include "tests/wine/running_panel.h"

namespace kelvane::bench {

/// A copy of the program whose receiver component is the timing one.
class TimingCopy : public wine::ProgramCopy {
 public:
  TimingCopy() {
    using namespace std::filesystem;
    copy_file(wine::programFolder() / L"..\\bench\\Sondrel.dll", folder() / L"Sondrel.dll",
              copy_options::overwrite_existing);
    copy(wine::programFolder() / L"data", folder() / L"data",
         copy_options::recursive | copy_options::overwrite_existing);
  }
};

/// Waits until a count of the timing component's has come this far.
inline void waitFor(const std::atomic<LONG>& count, LONG wanted, const char* what) {
  for (int waited = 0; count < wanted; ++waited) {
    must(waited < 5000, what);
    Sleep(1);
  }
}

}  // namespace kelvane::bench
