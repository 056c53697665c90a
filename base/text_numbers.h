#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>
#include <vector>

namespace kelvane {

/// Numbers texts as they are met, from 0; a text that was met before keeps its number. The texts
/// outlive it.
class TextNumbers {
 public:
  struct Number {
    std::size_t value;
    bool isNew;
  };

  /// Sets memory aside for so many different texts; more may come.
  explicit TextNumbers(std::size_t expected = 0);

  Number of(std::string_view text);
  /// The texts by their numbers.
  const std::vector<std::string_view>& texts() const { return texts_; }

 private:
  /// A text's number and, so that most others are told from it without a look at it, its hash.
  struct Slot {
    std::uint32_t hash = 0;
    std::uint32_t number = 0;
  };

  Slot& slotAt(std::size_t place) { return slots_[place & (slots_.size() - 1)]; }
  Slot& slotOf(std::uint32_t hash, std::string_view text);
  void makeSlots(std::size_t texts);

  std::vector<Slot> slots_;  ///< a power of two, at least a fifth of them free
  std::vector<std::string_view> texts_;
};

}  // namespace kelvane
