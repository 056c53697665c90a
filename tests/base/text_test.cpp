#include "base/text.h"

#include <gtest/gtest.h>

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

}  // namespace
}  // namespace kelvane
