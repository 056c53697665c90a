#pragma once

#include <windows.h>

#include <atomic>

#include "benchmarks/table.h"

namespace kelvane::bench {

/// What the timing component tells a benchmark and is told by it, in memory that both see. Times
/// are those of QueryPerformanceCounter.
struct TimingBoard {
  std::atomic<LONG64> frequencySetAt;  ///< when the newest SetRxFrequency arrived
  std::atomic<LONG> frequenciesSet;    ///< how many have arrived

  std::atomic<LONG> wanted;      ///< Hz to report as tuned at receiver 0; taken at a request
  std::atomic<LONG64> raisedAt;  ///< just before RxFrqUpdated was raised
  std::atomic<LONG> raised;      ///< how many were raised at a request

  std::atomic<LONG> level;  ///< dBm to report once at receiver 0; taken at a request; 0 for none
  std::atomic<LONG64> levelAt;  ///< just before it was raised
  std::atomic<LONG> levels;     ///< how many were raised at a request

  std::atomic<LONG> meterRate;     ///< S-meter events a second for each receiver; 0 none
  std::atomic<LONG> metersAtOnce;  ///< how many of them come at the same moment, 1 at least
  std::atomic<LONG> meterEvents;   ///< how many were raised
};

/// One side's view of the board, and the event that asks the component to look at it.
class SharedTiming {
 public:
  SharedTiming()
      : file_(CreateFileMappingW(INVALID_HANDLE_VALUE, nullptr, PAGE_READWRITE, 0,
                                 sizeof(TimingBoard), L"KelvaneTimingBoard")),
        board_(static_cast<TimingBoard*>(MapViewOfFile(file_, FILE_MAP_ALL_ACCESS, 0, 0, 0))),
        request_(CreateEventW(nullptr, FALSE, FALSE, L"KelvaneTimingRequest")) {
    must(board_ && request_, "the timing component's memory");
  }
  SharedTiming(const SharedTiming&) = delete;
  SharedTiming& operator=(const SharedTiming&) = delete;
  ~SharedTiming() {
    CloseHandle(request_);
    UnmapViewOfFile(board_);
    CloseHandle(file_);
  }

  TimingBoard& board() const { return *board_; }
  TimingBoard* operator->() const { return board_; }
  HANDLE request() const { return request_; }

 private:
  HANDLE file_;
  TimingBoard* board_;
  HANDLE request_;
};

inline LONG64 counter() {
  LARGE_INTEGER now;
  QueryPerformanceCounter(&now);
  return now.QuadPart;
}

/// A span of the counter, in microseconds.
inline double microseconds(LONG64 span) {
  LARGE_INTEGER frequency;
  QueryPerformanceFrequency(&frequency);
  return 1e6 * static_cast<double>(span) / static_cast<double>(frequency.QuadPart);
}

}  // namespace kelvane::bench
