#include "base/utf8.h"

#include <gtest/gtest.h>

namespace kelvane {
namespace {

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

}  // namespace
}  // namespace kelvane
