#pragma once

#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string_view>

#include "base/byte_marks.h"

namespace kelvane {

/// What ends a line, beside CR LF.
enum class LineEnd { Feed, FeedOrReturn };

/// Walks a text line by line and parts each line at the separators in it. Made for lists of many
/// short lines: it looks at many bytes at a step, and copies and allocates nothing.
template <char kSeparator, LineEnd kLineEnd>
class FieldCutter {
 public:
  /// Fields that are told apart; further ones are only counted.
  static constexpr std::size_t kMostFields = 16;

  explicit FieldCutter(std::string_view text) : text_(text) { load(); }

  /// Moves to the next line, at first to the first one; false when there is none.
  [[gnu::always_inline]] bool next() {
    if (start_ >= text_.size()) return false;
    begin_ = start_;
    ++number_;
    std::size_t fields = 0;
    while (ends_ == 0) {
      fields = cut(marks_, fields);
      if (block_ + kBlock >= text_.size()) return finish(text_.size(), fields);
      block_ += kBlock;
      load();
    }
    const std::uint64_t upToEnd = ends_ ^ (ends_ - 1);
    fields = cut(marks_ & upToEnd, fields);
    const std::size_t end = block_ + static_cast<std::size_t>(std::countr_zero(ends_));
    marks_ &= ~upToEnd;
    ends_ &= ends_ - 1;
    return finish(end, fields);
  }

  std::size_t number() const { return number_; }  ///< of the line, from 1
  std::size_t offset() const { return begin_; }   ///< of the line in the text
  std::string_view line() const { return text_.substr(begin_, end_ - begin_); }
  std::size_t fields() const { return fields_; }  ///< number of fields, at least 1

  /// A field of the first `kMostFields`; empty beyond the line's last.
  [[gnu::always_inline]] std::string_view field(std::size_t place) const {
    if (place >= fields_ || place >= kMostFields) return {};
    const std::size_t from = place == 0 ? begin_ : cuts_[place - 1] + 1;
    return {text_.data() + from, cuts_[place] - from};
  }

 private:
  static constexpr std::size_t kBlock = byte_marks::kBlock;

  /// Finds the separators of the block that begins at `block_`, and where its lines end.
  void load() {
    std::array<char, kBlock> rest{};
    const std::size_t left = block_ < text_.size() ? text_.size() - block_ : 0;
    const char* from = rest.data();
    if (left >= kBlock)
      from = text_.data() + block_;
    else if (left > 0)
      std::memcpy(rest.data(), text_.data() + block_, left);
    marks_ = byte_marks::find(from, kSeparator);
    ends_ = byte_marks::find(from, '\n');
    if constexpr (kLineEnd == LineEnd::FeedOrReturn) {
      const bool feedBehind = left > kBlock && text_[block_ + kBlock] == '\n';
      const std::uint64_t beforeFeed = ends_ >> 1 | std::uint64_t{feedBehind} << (kBlock - 1);
      ends_ |= byte_marks::find(from, '\r') & ~beforeFeed;
    }
  }

  /// Notes the separators whose bits are set; answers how many fields have ended now.
  std::size_t cut(std::uint64_t marks, std::size_t fields) {
    for (; marks != 0; marks &= marks - 1) {
      if (fields < kMostFields)
        cuts_[fields] = block_ + static_cast<std::size_t>(std::countr_zero(marks));
      ++fields;
    }
    return fields;
  }

  bool finish(std::size_t at, std::size_t fields) {
    start_ = at + 1;
    end_ = at > begin_ && text_[at - 1] == '\r' ? at - 1 : at;
    if (fields < kMostFields) cuts_[fields] = end_;
    fields_ = fields + 1;
    return true;
  }

  std::string_view text_;
  std::uint64_t marks_ = 0;  ///< of the block, where separators not yet passed stand
  std::uint64_t ends_ = 0;   ///< likewise the ends of lines
  std::size_t block_ = 0;
  std::size_t start_ = 0;  ///< of the next line
  std::size_t begin_ = 0;
  std::size_t end_ = 0;
  std::size_t number_ = 0;
  std::size_t fields_ = 0;
  std::array<std::size_t, kMostFields> cuts_{};
};

}  // namespace kelvane
