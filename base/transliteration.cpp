#include "base/transliteration.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <iterator>

#include "base/encoding.h"
#include "base/utf8.h"

namespace kelvane {

namespace {

/// The spellings of consecutive characters, between blanks.
struct Spellings {
  char32_t first;
  std::string_view words;
};

constexpr auto kSpellings = std::to_array<Spellings>({
    {0xA1, "! c GBP * JPY | S \" (C) a << - - (R) - deg +- 2 3 ' u P . , 1 o >> 1/4 1/2 3/4 ?"},
    {0xC0, "A A A A A A AE C E E E E I I I I D N O O O O O x O U U U U Y Th ss"},
    {0xE0, "a a a a a a ae c e e e e i i i i d n o o o o o / o u u u u y th y"},
    {0x100, "A a A a A a C c C c C c C c D d D d E e E e E e E e E e G g G g G g G g H h H h"},
    {0x128,
     "I i I i I i I i I i IJ ij J j K k k L l L l L l L l L l N n N n N n n N n O o O o O o"},
    {0x152, "OE oe R r R r R r S s S s S s S s T t T t T t U u U u U u U u U u U u W w Y y Y"},
    {0x179, "Z z Z z Z z s"},
    {0x218, "S s T t"},
    {0x386, "A . E I I  O  Y O i"},
    {0x391, "A V G D E Z I Th I K L M N X O P R"},
    {0x3A3, "S T Y F Ch Ps O I Y a e i i y a v g d e z i th i k l m n x o p r s s t y f ch ps o"},
    {0x3CA, "i y o y o"},
    {0x401, "Yo Dj G Ye Dz I Yi J Lj Nj C K I"},
    {0x40E, "U Dz A B V G D E Zh Z I Y K L M N O P R S T U F Kh Ts Ch Sh Shch \" Y ' E Yu Ya"},
    {0x430, "a b v g d e zh z i y k l m n o p r s t u f kh ts ch sh shch \" y ' e yu ya"},
    {0x451, "yo dj g ye dz i yi j lj nj c k i"},
    {0x45E, "u dz"},
    {0x490, "G g"},
    {0x2010, "- - - - -"},
    {0x2018, "' ' , ' \" \" \" \""},
    {0x2020, "+ ++ * >"},
    {0x2039, "< >"},
    {0x20AC, "EUR"},
    {0x2116, "No."},
    {0x2122, "(TM)"},
});

std::string_view wordAt(std::string_view words, std::size_t index) {
  for (; index > 0; --index) {
    const std::size_t end = words.find(' ');
    if (end == std::string_view::npos) return {};
    words.remove_prefix(end + 1);
  }
  return words.substr(0, words.find(' '));
}

std::string_view spellingOf(char32_t character) {
  const auto after = std::ranges::upper_bound(kSpellings, character, {}, &Spellings::first);
  if (after == kSpellings.begin()) return {};
  const Spellings& row = *std::prev(after);
  return wordAt(row.words, character - row.first);
}

std::string numberOf(char32_t character) {
  std::array<char, 16> text;
  std::snprintf(text.data(), text.size(), "\\u%04lX", static_cast<unsigned long>(character));
  return text.data();
}

}  // namespace

std::string transliterated(std::string_view utf8) {
  if (isAscii(utf8)) return std::string(utf8);
  std::string text;
  for (const char32_t character : characters(utf8)) {
    if (character < 0x80) {
      text += static_cast<char>(character);
    } else if (character == 0xA0 || character == 0x2026) {
      text += character == 0xA0 ? " " : "...";
    } else {
      const std::string_view spelling = spellingOf(character);
      text += spelling.empty() ? numberOf(character) : std::string(spelling);
    }
  }
  return text;
}

}  // namespace kelvane
