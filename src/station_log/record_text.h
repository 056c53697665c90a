#pragma once

#include <algorithm>
#include <charconv>
#include <cstring>
#include <string>
#include <string_view>

namespace kelvane {

/// A record of an export while it is put together: a hundred thousand of them are written, each of
/// dozens of pieces, so that its memory is used again and a piece costs no more than its bytes.
class RecordText {
 public:
  void clear() { size_ = 0; }
  std::string_view text() const { return {room_.data(), size_}; }

  RecordText& add(std::string_view piece) {
    std::memcpy(place(piece.size()), piece.data(), piece.size());
    size_ += piece.size();
    return *this;
  }
  RecordText& add(char c) {
    *place(1) = c;
    ++size_;
    return *this;
  }
  RecordText& addNumber(std::size_t value) {
    constexpr std::size_t kMostDigits = 20;
    char* const to = place(kMostDigits);
    size_ += static_cast<std::size_t>(std::to_chars(to, to + kMostDigits, value).ptr - to);
    return *this;
  }
  /// A number from 0 to 99 in two digits.
  RecordText& addTwoDigits(int value) {
    char* const to = place(2);
    to[0] = static_cast<char>('0' + value / 10);
    to[1] = static_cast<char>('0' + value % 10);
    size_ += 2;
    return *this;
  }

 private:
  char* place(std::size_t more) {
    if (room_.size() - size_ < more) room_.resize(std::max(2 * room_.size(), size_ + more));
    return room_.data() + size_;
  }

  std::string room_ = std::string(1024, '\0');
  std::size_t size_ = 0;
};

}  // namespace kelvane
