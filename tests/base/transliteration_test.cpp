#include "base/transliteration.h"

#include <gtest/gtest.h>

#include "base/encoding.h"
#include "base/utf8.h"

namespace kelvane {
namespace {

TEST(Transliteration, SpellsWhatHasASpellingAndNumbersTheRest) {
  EXPECT_EQ(transliterated("plain {}~"), "plain {}~");
  EXPECT_EQ(
      transliterated("S\u00E3o, \u00C5ngstr\u00F6m, \u00DF, \u00FF, \u0152uvre, \u017Bubr \u017E"),
      "Sao, Angstrom, ss, y, OEuvre, Zubr z");
  EXPECT_EQ(transliterated("\u041C\u0430\u044F\u043A \u0451 \u0407 \u0406 \u0404"),
            "Mayak yo Yi I Ye");
  EXPECT_EQ(transliterated("\u03A9\u03BC\u03AD\u03B3\u03B1 \u03CE"), "Omega o");
  EXPECT_EQ(transliterated("5\u20AC \u2026 \u2013 \u201Cx\u201D 9\u00B0 \u2122"),
            "5EUR ... - \"x\" 9deg (TM)");
  EXPECT_EQ(transliterated("\u4E2D\U0001F4FB\u017F\u0180"), "\\u4E2D\\u1F4FBs\\u0180");
  for (char32_t character = 0x80; character < 0x2200; ++character) {
    std::string one;
    appendCharacter(one, character);
    EXPECT_TRUE(isAscii(transliterated(one))) << static_cast<int>(character);
  }
}

}  // namespace
}  // namespace kelvane
