#include "components/sondrel/rigctld/rigctld_report_box.h"

#include <gtest/gtest.h>

#include "components/sondrel/rigctld/rigctld_capabilities.h"

namespace kelvane::sondrel {
namespace {

ValueReport value(RigItem item, std::int32_t number, std::uint32_t ticket = 0) {
  return {item, number, {}, Cause::Learned, ticket, false};
}

TEST(RigctldReportBox, KeepsTheNewestOfEachItemWhereNobodyCollects) {
  RigctldReportBox box;
  EXPECT_TRUE(box.put({LinkReport{LinkState::Up}}, 1));
  for (int i = 0; i < 100'000; ++i) {
    EXPECT_FALSE(box.put({value(RigItem::Strength, i), value(RigItem::Frequency, i)}, 1));
  }
  EXPECT_FALSE(box.put({value(RigItem::Frequency, 7, 3)}, 1));
  EXPECT_FALSE(box.put({value(RigItem::Frequency, 8)}, 1));
  const auto kept = box.take();
  ASSERT_EQ(kept.size(), 4U);
  EXPECT_EQ(std::get<ValueReport>(kept[1].report).number, 99'999);
  EXPECT_EQ(std::get<ValueReport>(kept[2].report).ticket, 3U) << "somebody waits for the answer";
  EXPECT_EQ(std::get<ValueReport>(kept[3].report).number, 8);
  EXPECT_TRUE(box.put({value(RigItem::Strength, 1)}, 1));
}

TEST(RigctldReportBox, KeepsTheLastOfALinkThatComesAndGoes) {
  RigctldReportBox box;
  for (int i = 0; i < 10'000; ++i) {
    const auto can = std::make_shared<RigctldCapabilities>();
    can->modelNumber = i;
    box.put({CapabilityReport{can}, value(RigItem::Frequency, i), LinkReport{LinkState::Up}}, 1);
    box.put({LinkReport{LinkState::Timeout}}, 1);
  }
  const auto kept = box.take();
  ASSERT_LE(kept.size(), 205U);
  const auto end = kept.size();
  EXPECT_EQ(std::get<LinkReport>(kept[end - 1].report).state, LinkState::Timeout);
  EXPECT_EQ(std::get<LinkReport>(kept[end - 2].report).state, LinkState::Up);
  EXPECT_EQ(std::get<ValueReport>(kept[end - 3].report).number, 9'999);
  EXPECT_EQ(std::get<CapabilityReport>(kept[end - 4].report).found->modelNumber, 9'999);
}

}  // namespace
}  // namespace kelvane::sondrel
