// Who may come in from elsewhere.
#include "base/net_filter.h"

#include <gtest/gtest.h>

#include <string>

namespace kelvane {
namespace {

bool comesIn(const std::string& from, std::string_view list) {
  const auto address = numericAddress(from, 50'000);
  EXPECT_TRUE(address) << from;
  return address && isInNetList(*address, list);
}

TEST(NetFilter, LetsInWhoIsListedByTheBitsThatCount) {
  for (const char* from : {"192.168.1.7", "10.1.255.3", "fd00::1", "fdff::9"}) {
    EXPECT_TRUE(comesIn(from, "192.168.1.7 10.1.0.0/16 fd00::/8")) << from;
  }
  for (const char* from : {"192.168.1.8", "10.2.0.1", "fe80::1", "127.0.0.1", "::1"}) {
    EXPECT_FALSE(comesIn(from, "192.168.1.7 10.1.0.0/16 fd00::/8")) << from;
  }
  EXPECT_TRUE(comesIn("8.8.8.8", "0.0.0.0/0"));
  EXPECT_FALSE(comesIn("fd00::1", "0.0.0.0/0")) << "the other family";
  EXPECT_TRUE(comesIn("172.16.129.1", "172.16.128.0/17"));
  EXPECT_FALSE(comesIn("172.16.127.1", "172.16.128.0/17"));
  EXPECT_FALSE(comesIn("192.168.1.7", ""));
}

TEST(NetFilter, WordsThatAreNoAddressLetNobodyIn) {
  for (const std::string_view list :
       {"everybody", "192.168.1", "192.168.1.7/33", "192.168.1.7/-1", "192.168.1.7/", "/0", "0/0",
        "fd00::/129", "192.168.1.7/2x", "192.168.1.7:80"}) {
    EXPECT_FALSE(isNetList(list)) << list;
    EXPECT_FALSE(comesIn("192.168.1.7", list)) << list;
  }
  EXPECT_TRUE(isNetList("192.168.1.7 10.0.0.0/8"));
  EXPECT_TRUE(isNetList(""));
}

TEST(NetFilter, KnowsThisComputer) {
  for (const char* own : {"127.0.0.1", "127.8.9.10", "::1"}) {
    EXPECT_TRUE(isLoopbackAddress(*numericAddress(own, 1))) << own;
  }
  for (const char* other : {"128.0.0.1", "192.168.1.7", "::2", "fd00::1"}) {
    EXPECT_FALSE(isLoopbackAddress(*numericAddress(other, 1))) << other;
  }
}

}  // namespace
}  // namespace kelvane
