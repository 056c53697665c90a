#include "base/text.h"

#include <gtest/gtest.h>

#include "base/encoding.h"
#include "base/number.h"
#include "base/transliteration.h"
#include "base/utf8.h"

namespace kelvane {
namespace {

TEST(Text, TrimsAllKindsOfBlanks) {
  EXPECT_EQ(trimmed(" \t a b\r\n"), "a b");
  EXPECT_EQ(trimmed(" \r\n"), "");
  EXPECT_EQ(trimmed(""), "");
}

TEST(Text, SplitsIntoAsManyPartsAsThereAreSeparatorsAndOneMore) {
  using Parts = std::vector<std::string_view>;
  EXPECT_EQ(split("a;;b;", ';'), (Parts{"a", "", "b", ""}));
  EXPECT_EQ(split("", ';'), (Parts{""}));
  EXPECT_EQ(split("abc", ';'), (Parts{"abc"}));
}

TEST(Text, RaisesOnlyAsciiLetters) {
  EXPECT_EQ(upper("az{`AZ\u00E9"), "AZ{`AZ\u00E9");
  EXPECT_TRUE(equalIgnoringCase("Usb", "uSB"));
  EXPECT_FALSE(equalIgnoringCase("usb", "usbd"));
}

TEST(Text, CountsCharactersAndNotBytes) {
  EXPECT_EQ(characterCount("M\u00FCnchen \u25CF \U0001F4FB"), 11u);
  EXPECT_EQ(characterCount("\xFF\x80"), 1u);
}

TEST(Num, ReadsTheLongestPrefixThatFormsANumber) {
  EXPECT_EQ(num("7.123"), 7.123);
  EXPECT_EQ(num("  42kHz"), 42);
  EXPECT_EQ(num("1.5.3"), 1.5);
  EXPECT_EQ(num("-700"), -700);
  EXPECT_EQ(num(".5"), .5);
  EXPECT_EQ(num("5."), 5);
  EXPECT_EQ(num("1e9"), 1);
  for (const char* none : {"", " ", "abc", "-", ".", "inf", "nan", "x7"}) EXPECT_EQ(num(none), 0);
}

TEST(WholeNumber, RefusesAnythingElse) {
  EXPECT_EQ(wholeNumber(" 70000 "), 70000);
  EXPECT_EQ(wholeNumber("+5"), 5);
  EXPECT_EQ(wholeNumber("-5"), -5);
  for (const char* bad : {"", "5a", "5.0", "+-5", "99999999999999999999"})
    EXPECT_EQ(wholeNumber(bad), std::nullopt) << bad;
}

TEST(DecimalText, IsTheShortestThatReadsBack) {
  EXPECT_EQ(decimalText(7123.456), "7123.456");
  EXPECT_EQ(decimalText(29999999), "29999999");
  EXPECT_EQ(decimalText(1e15), "1000000000000000");
}

TEST(NearestLong, RoundsAndStaysWithin32Bits) {
  EXPECT_EQ(nearestLong(7050000.5), 7050001);
  EXPECT_EQ(nearestLong(-0.6), -1);
  EXPECT_EQ(nearestLong(1e30), 2147483647);
  EXPECT_EQ(nearestLong(-1e30), -2147483647 - 1);
}

TEST(Utf8, CharactersAreTakenApartAndPutTogetherAgain) {
  const std::string text = "M\u00FC \u25CF\U0001F4FB";
  std::string again;
  for (const char32_t character : characters(text)) appendCharacter(again, character);
  EXPECT_EQ(again, text);
  EXPECT_EQ(characters(text), U"M\u00FC \u25CF\U0001F4FB");
  EXPECT_EQ(characters("a\xFF\xE2\x82"), U"a\uFFFD\uFFFD\uFFFD");
}

TEST(Utf8, WhatIsNoCharacterIsNotAdded) {
  std::string text = "a";
  for (const char32_t character : {0xD800, 0xDFFF, 0x110000}) appendCharacter(text, character);
  EXPECT_EQ(text, "a");
}

TEST(Utf8, TheLastCharacterGoesWhole) {
  std::string text = "a\u00FC\U0001F4FB";
  for (const char* left : {"a\u00FC", "a", "", ""}) {
    dropLastCharacter(text);
    EXPECT_EQ(text, left);
  }
}

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
