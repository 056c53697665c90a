#include <gtest/gtest.h>

#include "tests/fakes/sondrel_rig.h"

namespace kelvane::sondrel {
namespace {

TEST(LateTick, BringsLinksUpInTheOrderOfTheirOwnTimes) {
  fakes::SondrelRig rig;
  rig.core.OpenRxConfig("Kelvane", 0);
  rig.clock.advance(milliseconds(5000));
  rig.pump();
  const auto links = rig.listener.lines("RxConnState");
  ASSERT_EQ(links.size(), 4u);
  EXPECT_EQ(links.back(), "RxConnState 0 1000") << "the first receiver's link is the slow one";
}

}  // namespace
}  // namespace kelvane::sondrel
