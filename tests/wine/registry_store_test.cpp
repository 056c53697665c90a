#include "win32/registry_store.h"

#include <gtest/gtest.h>

#include "tests/wine/instance.h"

namespace kelvane::win32 {
namespace {

using wine::Instance;

TEST(RegistryStore, KeepsNumbersFlagsAndTextsForEachInstance) {
  const Instance a(L"TestStoreA"), b(L"TestStoreB");
  RegistryStore first("TestStoreA"), second("TestStoreB");
  EXPECT_EQ(first.number("MainLeft", 1000), 1000);
  EXPECT_EQ(first.text("DDEName", "Kelvane"), "Kelvane");
  EXPECT_TRUE(first.writeNumber("MainLeft", -5));
  EXPECT_TRUE(first.writeFlag("DDELink", true));
  EXPECT_TRUE(first.writeText("DDEName", "D\u00e9codeur"));
  EXPECT_EQ(first.number("MainLeft", 1000), -5);
  EXPECT_EQ(a.number(L"DDELink"), -1);
  EXPECT_EQ(first.text("DDEName", ""), "D\u00e9codeur");
  EXPECT_EQ(second.number("MainLeft", 1000), 1000);
  EXPECT_TRUE(first.erase());
  EXPECT_FALSE(a.hasSettings());
  EXPECT_TRUE(first.erase()) << "nothing to erase is no failure while other instances exist";
}

TEST(RegistryStore, ReadsTextsWithAndWithoutTheirEndAndDefaultsForOtherKinds) {
  const Instance instance(L"TestStoreKinds");
  const RegistryStore store("TestStoreKinds");
  instance.write(L"Whole", REG_SZ, L"abc", 6);
  instance.write(L"Ended", REG_SZ, L"abc", 8);
  instance.write(L"Empty", REG_SZ, L"", 0);
  instance.write(L"Short", REG_BINARY, "ab", 2);
  instance.write(L"Words", REG_SZ, L"17", 6);
  instance.write(L"Number", 17);
  const std::wstring longText(5000, L'x'), tooLong(50'000, L'x');
  instance.write(L"Long", REG_SZ, longText.c_str(), 10'002);
  instance.write(L"Too long", REG_SZ, tooLong.c_str(), 100'002);
  EXPECT_EQ(store.text("Whole", "d"), "abc");
  EXPECT_EQ(store.text("Ended", "d"), "abc");
  EXPECT_EQ(store.text("Empty", "d"), "d");
  EXPECT_EQ(store.text("Number", "d"), "d");
  EXPECT_EQ(store.text("Long", "d").size(), 5000U);
  EXPECT_EQ(store.text("Too long", "d"), "d");
  EXPECT_EQ(store.number("Short", 7), 7);
  EXPECT_EQ(store.number("Words", 7), 7);
  EXPECT_EQ(store.number("Number", 7), 17);
}

}  // namespace
}  // namespace kelvane::win32
