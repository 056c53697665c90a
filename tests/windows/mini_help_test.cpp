#include "windows/mini_help.h"

#include <gtest/gtest.h>

#include "tests/fakes/map_settings.h"

namespace kelvane {
namespace {

TEST(MiniHelp, OpensAtTheMainWindowAndThenWhereEscapeLeftIt) {
  fakes::MapSettings settings;
  MiniHelp help(settings);
  EXPECT_EQ(help.startPlace({300, 450}), (Global::Point{300, 450}));
  help.escaped({-1500, 75});
  EXPECT_EQ(help.startPlace({300, 450}), (Global::Point{-1500, 75}));
  EXPECT_EQ(settings.number("HelpLeft", 0), -1500);
  EXPECT_EQ(settings.number("HelpTop", 0), 75);
}

}  // namespace
}  // namespace kelvane
