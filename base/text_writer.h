#pragma once

#include <algorithm>
#include <array>
#include <charconv>
#include <concepts>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string>
#include <string_view>
#include <utility>

namespace kelvane {

/// Bytes that a form of text cannot hold as they are.
class ByteSet {
 public:
  enum class Controls { Plain, Among };

  /// The signs, and all that is below a blank where `controls` are among them.
  constexpr explicit ByteSet(std::string_view signs, Controls controls = Controls::Plain) {
    for (const char sign : signs) has_[static_cast<unsigned char>(sign)] = 1;
    for (std::size_t byte = 0; controls == Controls::Among && byte < ' '; ++byte) has_[byte] = 1;
  }

  /// Where the first of them stands in a text; its length where there is none.
  std::size_t firstIn(std::string_view text) const {
    std::size_t at = 0;
    // Mostly there is none.
    while (at + 4 <= text.size() &&
           !(has(text[at]) | has(text[at + 1]) | has(text[at + 2]) | has(text[at + 3])))
      at += 4;
    while (at < text.size() && !has(text[at])) ++at;
    return at;
  }

 private:
  constexpr unsigned has(char c) const { return has_[static_cast<unsigned char>(c)]; }

  std::array<unsigned char, 256> has_{};  ///< 1 for one of them
};

/// A long text made of many short pieces. A string looks at its length with each of them; here
/// there is room for many at a time. Where there is no memory for more, what was added stays.
class TextWriter {
 public:
  TextWriter() = default;
  TextWriter(const TextWriter&) = delete;
  TextWriter& operator=(const TextWriter&) = delete;

  /// Sets memory aside for so many bytes in all; beyond them more is taken as need be.
  void reserve(std::size_t bytes) {
    settle();
    text_.reserve(bytes);
    at_ = end_ = text_.data() + text_.size();
  }
  std::string_view view() const { return {text_.data(), size()}; }
  std::size_t size() const { return static_cast<std::size_t>(at_ - text_.data()); }
  void clear() { at_ = text_.data(); }
  /// Takes off what was added when it was longer than so many bytes.
  void cutTo(std::size_t size) { at_ = text_.data() + size; }
  /// The text; the writer is empty then.
  std::string take() {
    settle();
    std::string text = std::move(text_);
    text_.clear();
    at_ = end_ = text_.data();
    return text;
  }

  TextWriter& add(char c) {
    *room(1) = c;
    ++at_;
    return *this;
  }
  TextWriter& add(std::string_view piece) {
    if (piece.size() > left()) return addBeyond(piece);
    copy(piece, at_);
    at_ += piece.size();
    return *this;
  }
  /// Of a literal the length is known, and nothing is called.
  template <std::size_t kSize>
  [[gnu::always_inline]] TextWriter& add(const char (&literal)[kSize]) {
    std::memcpy(room(kSize - 1), literal, kSize - 1);
    at_ += kSize - 1;
    return *this;
  }
  TextWriter& add(std::size_t times, char c) {
    wrote(std::fill_n(room(times), times, c));
    return *this;
  }
  TextWriter& addNumber(std::integral auto number) {
    constexpr std::size_t kMostDigits = 20;
    char* const to = room(kMostDigits);
    wrote(std::to_chars(to, to + kMostDigits, number).ptr);
    return *this;
  }
  /// Adds a piece in which `replace(byte)` writes what stands for each byte of a set.
  template <class Replace>
  TextWriter& addReplacing(std::string_view piece, const ByteSet& set, Replace replace) {
    for (;;) {
      const std::size_t plain = set.firstIn(piece);
      add(piece.substr(0, plain));
      if (plain == piece.size()) return *this;
      replace(piece[plain]);
      piece.remove_prefix(plain + 1);
    }
  }

  /// Room for so many bytes behind the text; those that are put there count when `wrote` is told
  /// where they end.
  char* room(std::size_t bytes) {
    if (bytes > left()) makeRoom(bytes);
    return at_;
  }
  void wrote(char* end) { at_ = end; }

 private:
  /// Most pieces are short: to call a function takes longer than to copy them by two words that may
  /// overlap.
  static void copy(std::string_view piece, char* to) {
    const std::size_t size = piece.size();
    if (size > 2 * sizeof(std::uint64_t))
      std::memcpy(to, piece.data(), size);
    else if (size >= sizeof(std::uint64_t))
      copyEnds<std::uint64_t>(piece, to);
    else if (size >= sizeof(std::uint32_t))
      copyEnds<std::uint32_t>(piece, to);
    else
      for (std::size_t at = 0; at < size; ++at) to[at] = piece[at];
  }
  template <class Word>
  static void copyEnds(std::string_view piece, char* to) {
    const std::size_t second = piece.size() - sizeof(Word);
    Word words[2];
    std::memcpy(&words[0], piece.data(), sizeof(Word));
    std::memcpy(&words[1], piece.data() + second, sizeof(Word));
    std::memcpy(to, &words[0], sizeof(Word));
    std::memcpy(to + second, &words[1], sizeof(Word));
  }

  std::size_t left() const { return static_cast<std::size_t>(end_ - at_); }
  /// Gives the string the length that was written.
  void settle() {
    text_.resize(size());
    end_ = at_;
  }

  [[gnu::noinline]] void makeRoom(std::size_t bytes) {
    constexpr std::size_t kLeast = 64, kMost = 65'536;  // what was just cleared is still near
    const std::size_t used = size();
    text_.resize(used + std::max(bytes, std::clamp(used, kLeast, kMost)));
    at_ = text_.data() + used;
    end_ = text_.data() + text_.size();
  }
  [[gnu::noinline]] TextWriter& addBeyond(std::string_view piece) {
    settle();
    text_.append(piece);
    at_ = end_ = text_.data() + text_.size();
    return *this;
  }

  std::string text_;  ///< as long as there is room
  char* at_ = text_.data();
  char* end_ = text_.data();
};

}  // namespace kelvane
