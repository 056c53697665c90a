#include "panel/command_line.h"

#include <gtest/gtest.h>

namespace kelvane {
namespace {

using Action = CommandLine::Action;

CommandLine run(const char* name) { return {Action::Run, name}; }
CommandLine clean(const char* name) { return {Action::Clean, name}; }
const CommandLine kUsage{Action::Usage, ""};

TEST(CommandLine, NamesAnInstance) {
  EXPECT_EQ(parseCommandLine(""), run("Kelvane"));
  EXPECT_EQ(parseCommandLine("   "), run("Kelvane"));
  EXPECT_EQ(parseCommandLine("  Shack two "), run("Shack two"));
  for (const char* odd : {"a-b", "-x", "-Clean", "- clean", "?"})
    EXPECT_EQ(parseCommandLine(odd), run(odd));
}

TEST(CommandLine, CleansAnInstance) {
  EXPECT_EQ(parseCommandLine("-clean"), clean("Kelvane"));
  EXPECT_EQ(parseCommandLine("Shack -clean"), clean("Shack"));
  EXPECT_EQ(parseCommandLine("-clean Shack"), clean("Shack"));
  EXPECT_EQ(parseCommandLine("left-cleanright"), clean("left      right"));
}

TEST(CommandLine, ShowsItsUsageRatherThanGuess) {
  for (const char* odd : {"-?", "Shack -? -clean", "a-?b", "Shack -clean -x", "a-b -clean",
                          "-clean -clean", "--clean"})
    EXPECT_EQ(parseCommandLine(odd), kUsage) << odd;
}

}  // namespace
}  // namespace kelvane
