#include <gtest/gtest.h>

#include <atomic>
#include <cstdlib>
#include <new>

#include "tests/ambrel/ambrel_play.h"
#include "tests/fakes/channel_rig.h"
#include "tests/fakes/log_rig.h"

namespace {

/// How many requests for memory are served before one is refused; none is while it is below 0.
std::atomic<long> requestsLeft = -1;

void* served(std::size_t size, bool refusable) {
  if (refusable && requestsLeft >= 0 && requestsLeft.fetch_sub(1) == 0) return nullptr;
  return std::malloc(size > 0 ? size : 1);
}

}  // namespace

void* operator new(std::size_t size) {
  void* memory = served(size, true);
  if (!memory) throw std::bad_alloc();
  return memory;
}
void* operator new(std::size_t size, const std::nothrow_t&) noexcept { return served(size, true); }
void* operator new[](std::size_t size) { return operator new(size); }
void* operator new[](std::size_t size, const std::nothrow_t&) noexcept {
  return served(size, true);
}
void operator delete(void* memory) noexcept { std::free(memory); }
void operator delete(void* memory, std::size_t) noexcept { std::free(memory); }
void operator delete[](void* memory) noexcept { std::free(memory); }
void operator delete[](void* memory, std::size_t) noexcept { std::free(memory); }

namespace kelvane {
namespace {

namespace fs = std::filesystem;

/// Does the work again and again, each time with the next request for memory refused, until none
/// is. What is thrown ends at a window's barrier, as in the program.
template <class Work, class Check>
void withEachRequestRefused(Work work, Check check) {
  constexpr long kFewest = 20, kMost = 20'000;
  for (long request = 0; request < kMost; ++request) {
    requestsLeft = request;
    const bool whole = barrier("working without memory", work);
    const bool refused = requestsLeft.exchange(-1) < 0;
    check(!whole, refused);
    if (testing::Test::HasFailure()) FAIL() << "request " << request;
    if (!refused) {
      EXPECT_GT(request, kFewest);
      return;
    }
  }
  FAIL() << "it never ended";
}

TEST(NoMemory, AnImportOfChannelsTakesEachLineWholeOrNotAndSaysSo) {
  fakes::ChannelRig rig;
  rig.open();
  const std::string lines =
      "001;    6000000;    0;   AM; 6000;Slow;0;\r\n002;    7000000;    0;   AM; 6000;Slow;0;\r\n";
  std::ofstream(rig.file("in.txt"), std::ios::binary) << lines;
  const std::string empty = rig.row(1).substr(2);
  withEachRequestRefused(
      [&] {
        rig.fileDialogs.script = {pathText(rig.file("in.txt"))};
        rig.editor().clicked(id::ChnImport);
        for (int i = 0; i < 20; ++i) rig.editor().tick(rig.sondrel.clock.now += milliseconds(100));
      },
      [&](bool thrown, bool refused) {
        const auto isWhole = [&](GridRow row, const std::string& frequency) {
          return rig.row(row).substr(2) == empty || rig.cell(row, 1) == frequency;
        };
        EXPECT_TRUE(isWhole(1, "6000000") && isWhole(2, "7000000"));
        EXPECT_EQ(rig.content(rig.file("in.txt")), lines);
        if (refused || thrown) return;
        EXPECT_EQ(rig.cell(2, 1), "7000000");
      });
}

TEST(NoMemory, AnExportOfTheLogIsTheOldFileOrTheNewOne) {
  fakes::LogRig rig;
  rig.write("   6070000|AM   |  6000|Slow |2022-07-13|12:00:00|VOICE|CQ|A|\r\n");
  rig.look();
  const fs::path out = rig.folder.path() / "log.csv";
  writeFileSafely(out, "old");
  withEachRequestRefused(
      [&] {
        rig.dialogs.choice = Choice::Ok;
        rig.dialogs.script = {pathText(out)};
        rig.log->Export_Click();
        rig.settle();
      },
      [&](bool thrown, bool refused) {
        for (; rig.log->busy(); std::this_thread::yield())
          barrier("ending", [&] { rig.log->tick(); });
        const std::string text = readFile(out, 1 << 20).value_or("none");
        EXPECT_TRUE(text == "old" || text.find("6070000") != text.npos) << text;
        EXPECT_EQ(rig.cell(0, 7), "CQ") << "the log is as it was";
        if (!refused) EXPECT_NE(rig.log->view().Notice.find("log.csv"), std::string::npos);
        EXPECT_TRUE(!refused || thrown || !rig.log->view().Notice.empty());
        writeFileSafely(out, "old");
      });
}

TEST(NoMemory, AnImportOfAScheduleTakesTheNewOneOrLeavesTheOld) {
  ambrel::AmbrelPlay play;
  const auto line = [](const char* what) {
    return what + std::string(";0000-2400;;G;S;E;Eu;w;1;;\r\n");
  };
  play.importText(line("6070"), "sked-a21.csv");
  const fs::path next = play.write(play.userFolder() / "sked-a22.csv", play.heading + line("7070"));
  const fs::path before =
      play.write(play.userFolder() / "sked-b21.csv", play.heading + line("6070"));
  withEachRequestRefused(
      [&] {
        play.core->importSchedule(next);
        for (; play.core->isLoading(); std::this_thread::yield()) play.core->deliverEvents();
      },
      [&](bool thrown, bool refused) {
        for (; play.core->isLoading(); std::this_thread::yield()) play.core->deliverEvents();
        const bool isNew = !play.name(7'070'000).empty();
        EXPECT_NE(isNew, !play.name(6'070'000).empty()) << "one of the two, whole";
        EXPECT_TRUE(isNew || thrown || !play.core->loadWords().empty());
        if (!refused) EXPECT_TRUE(isNew);
        play.import(before);
        EXPECT_EQ(play.name(6'070'000), "S") << play.core->loadWords();
      });
}

}  // namespace
}  // namespace kelvane
