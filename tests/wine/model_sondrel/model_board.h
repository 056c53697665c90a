#pragma once

#include <windows.h>

#include <atomic>
#include <stdexcept>
#include <string>
#include <string_view>

namespace kelvane::test {

/// What a test tells the component of made-up radios and hears of it, in memory that both see.
struct ModelBoard {
  static constexpr LONG kRequests = 4096;
  static constexpr std::size_t kLongest = 64;

  /// What the radios shall do next; taken when `orders` grows.
  enum Order : LONG { Happens, LinkUp, LinkDown, SayInputs };
  std::atomic<LONG> order, mark, number;
  std::atomic<LONG> orders;  ///< given
  std::atomic<LONG> done;    ///< carried out
  std::atomic<LONG> inputs;  ///< of the hand wait for the window; not 0 where any do

  std::atomic<LONG> requests;         ///< how many were made
  char request[kRequests][kLongest];  ///< the newest, each in its place modulo their number
};

/// One side's view of the board, and the events that say that there is an order, and that it was
/// carried out.
class SharedModel {
 public:
  SharedModel()
      : file_(CreateFileMappingW(INVALID_HANDLE_VALUE, nullptr, PAGE_READWRITE, 0,
                                 sizeof(ModelBoard), L"KelvaneModelBoard")),
        board_(static_cast<ModelBoard*>(MapViewOfFile(file_, FILE_MAP_ALL_ACCESS, 0, 0, 0))),
        ordered_(CreateEventW(nullptr, FALSE, FALSE, L"KelvaneModelOrder")),
        carriedOut_(CreateEventW(nullptr, FALSE, FALSE, L"KelvaneModelDone")) {
    if (!board_ || !ordered_ || !carriedOut_)
      throw std::runtime_error("no memory for the made-up radios");
  }
  SharedModel(const SharedModel&) = delete;
  SharedModel& operator=(const SharedModel&) = delete;
  ~SharedModel() {
    CloseHandle(carriedOut_);
    CloseHandle(ordered_);
    UnmapViewOfFile(board_);
    CloseHandle(file_);
  }

  ModelBoard* operator->() const { return board_; }
  HANDLE ordered() const { return ordered_; }
  HANDLE carriedOut() const { return carriedOut_; }

  void note(std::string_view request) const {
    char* place = board_->request[board_->requests % ModelBoard::kRequests];
    const std::size_t length = request.copy(place, ModelBoard::kLongest - 1);
    place[length] = 0;
    ++board_->requests;
  }
  std::string request(LONG which) const { return board_->request[which % ModelBoard::kRequests]; }

 private:
  HANDLE file_;
  ModelBoard* board_;
  HANDLE ordered_, carriedOut_;
};

}  // namespace kelvane::test
