#include "base/instance_name.h"

#include <gtest/gtest.h>

#include "base/encoding.h"
#include "base/text.h"

namespace kelvane {
namespace {

std::string repeated(std::string_view text, int times) {
  std::string result;
  while (times-- > 0) result += text;
  return result;
}

TEST(InstanceName, StaysAsItIsWhereAKeyCanHaveIt) {
  EXPECT_EQ(safeInstanceName("Shack two / \"left\""), "Shack two / \"left\"");
  EXPECT_EQ(safeInstanceName("A\\B\\"), "A_B_");
  EXPECT_EQ(safeInstanceName(""), "Kelvane");
}

TEST(InstanceName, IsShortenedToAKeyOfItsOwn) {
  const std::string first = safeInstanceName(repeated("a", 300));
  const std::string second = safeInstanceName(repeated("a", 299) + "b");
  EXPECT_NE(first, second);
  EXPECT_EQ(first, safeInstanceName(repeated("a", 300)));
  EXPECT_EQ(first.substr(0, 100), repeated("a", 100));
  // Names that a key would take but that differ only in what was replaced stay apart too.
  EXPECT_NE(safeInstanceName(repeated("a\\", 150)), safeInstanceName(repeated("a_", 150)));
  // A key's name has at most 255 UTF-16 units, and the cut tears no character.
  const std::string wide = safeInstanceName(repeated("\U0001F4FB", 300));
  EXPECT_LE(2 * characterCount(wide), 255u);
  EXPECT_TRUE(isUtf8(wide));
}

TEST(FileName, HoldsNothingThatAFileNameMayNot) {
  EXPECT_EQ(safeFileName("R/S\\T: <5>|\"?*\x01"), "R_S_T_ _5______");
  EXPECT_EQ(safeFileName("M\u00FCnchen 2.5"), "M\u00FCnchen 2.5");
  EXPECT_EQ(safeFileName("dots. . "), "dots____");
  EXPECT_EQ(safeFileName("..\\..\\etc"), ".._.._etc");
  EXPECT_EQ(safeFileName(".."), "__");
  EXPECT_EQ(safeFileName(""), "_");
  EXPECT_LE(characterCount(safeFileName(repeated("x", 400))), 100u);
}

TEST(FileName, IsNeverADevice) {
  for (const char* device : {"con", "NUL", "Aux.txt", "COM1", "lpt9.log", "PRN .x"})
    EXPECT_EQ(safeFileName(device), std::string("_") + device);
  for (const char* fine : {"CONsole", "COM", "COM10", "nulls"}) EXPECT_EQ(safeFileName(fine), fine);
}

}  // namespace
}  // namespace kelvane
