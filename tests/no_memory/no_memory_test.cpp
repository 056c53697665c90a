#include <gtest/gtest.h>

#include <atomic>
#include <cstdlib>
#include <new>
#include <thread>

#include "base/barrier.h"
#include "components/ambrel/formats/list_format.h"
#include "tests/ambrel/ambrel_play.h"
#include "tests/fakes/channel_rig.h"
#include "tests/fakes/log_rig.h"

// The memory of this program is refused where a test wants it, which is why it has one of its own.

namespace {

/// How many requests for memory are served before one is refused; none is while it is below 0.
std::atomic<long> requestsLeft = -1;

void* served(std::size_t size) {
  if (requestsLeft >= 0 && requestsLeft.fetch_sub(1) == 0) return nullptr;
  return std::malloc(size > 0 ? size : 1);
}

}  // namespace

void* operator new(std::size_t size) {
  void* memory = served(size);
  if (!memory) throw std::bad_alloc();
  return memory;
}
void* operator new(std::size_t size, const std::nothrow_t&) noexcept { return served(size); }
void* operator new[](std::size_t size) { return operator new(size); }
void* operator new[](std::size_t size, const std::nothrow_t&) noexcept { return served(size); }
void operator delete(void* memory) noexcept { std::free(memory); }
void operator delete(void* memory, std::size_t) noexcept { std::free(memory); }
void operator delete[](void* memory) noexcept { std::free(memory); }
void operator delete[](void* memory, std::size_t) noexcept { std::free(memory); }

namespace kelvane {
namespace {

namespace fs = std::filesystem;

/// Does the work again and again, each time with the next request for memory refused, until none
/// is. What is thrown ends at a window's barrier, as in the program. The check is told whether a
/// request was refused and whether that was thrown out of the work.
template <class Work, class Check>
void withEachRequestRefused(Work work, Check check) {
  constexpr long kFewest = 20, kMost = 20'000;
  for (long request = 0; request < kMost; ++request) {
    requestsLeft = request;
    const bool whole = barrier("working without memory", work);
    const bool refused = requestsLeft.exchange(-1) < 0;
    check(refused, !whole);
    if (testing::Test::HasFailure()) FAIL() << "request " << request;
    if (!refused) {
      EXPECT_GT(request, kFewest);
      return;
    }
  }
  FAIL() << "it never ended";
}

/// The channel window, and real time for what is done beside it.
class ChannelsWithoutMemory : public testing::Test {
 protected:
  void press(int button, const std::string& file) {
    rig_.fileDialogs.script = {pathText(rig_.file(file))};
    rig_.editor().clicked(button);
    settle();
  }
  void settle() {
    do {
      rig_.editor().tick(rig_.sondrel.clock.now += milliseconds(100));
      rig_.editor().deliver();
      std::this_thread::yield();
    } while (rig_.channelView().hourglass);
  }

  fakes::ChannelRig rig_;
};

TEST_F(ChannelsWithoutMemory, AreImportedLineByLineAndTheWindowLivesOn) {
  rig_.open();
  const std::string lines =
      "001;    6000000;    0;   AM; 6000;Slow;0;\r\n002;    7000000;    0;   AM; 6000;Slow;0;\r\n";
  std::ofstream(rig_.file("in.txt"), std::ios::binary) << lines;
  const std::string empty = rig_.row(1).substr(2);
  const auto isWhole = [&](GridRow row, const std::string& frequency) {
    return rig_.row(row).substr(2) == empty || rig_.cell(row, 1) == frequency;
  };
  const auto check = [&](bool refused, bool thrown) {
    settle();
    EXPECT_TRUE(isWhole(1, "6000000") && isWhole(2, "7000000"));
    const bool all = rig_.cell(1, 1) == "6000000" && rig_.cell(2, 1) == "7000000";
    EXPECT_TRUE(all || thrown || rig_.words().find("Stopped: ") != std::string::npos ||
                rig_.words().find(" read") != std::string::npos)
        << rig_.words();
    EXPECT_TRUE(all || refused);
    press(id::ChnImport, "in.txt");
    EXPECT_EQ(rig_.cell(2, 1), "7000000") << "memory is there again: " << rig_.words();
    rig_.editor().close();
    rig_.open();
  };
  withEachRequestRefused([&] { press(id::ChnImport, "in.txt"); }, check);
}

TEST_F(ChannelsWithoutMemory, AreExportedWholeOrTheOldFileIsThere) {
  rig_.start();
  rig_.sondrel.core.SetRxChannel(0, 1, 6'000'000, 0, 0, 6000, 0, 0);
  rig_.open();
  rig_.fileDialogs.choice = Choice::Ok;
  const auto check = [&](bool refused, bool) {
    settle();
    const std::string text = rig_.content(rig_.file("out.txt"));
    const bool isNew = text.find("6000000;") != text.npos && text.ends_with("\n");
    EXPECT_TRUE(isNew || text == "old") << text << rig_.words();
    EXPECT_TRUE(isNew || refused);
    writeFileSafely(rig_.file("out.txt"), "old");
  };
  writeFileSafely(rig_.file("out.txt"), "old");
  withEachRequestRefused([&] { press(id::ChnExport, "out.txt"); }, check);
}

TEST(NoMemory, AnExportOfTheLogIsWholeOrTheOldFileIsThere) {
  fakes::LogRig rig;
  rig.write("   6070000|AM   |  6000|Slow |2022-07-13|12:00:00|VOICE|CQ|A|\r\n");
  rig.look();
  const fs::path out = rig.folder.path() / "log.csv";
  writeFileSafely(out, "old");
  const auto content = [](const fs::path& file) { return readFile(file, 1 << 20).value_or(""); };
  const auto check = [&](bool refused, bool thrown) {
    for (; rig.log->busy(); std::this_thread::yield()) rig.log->deliver();
    const bool isNew = content(out).find("6070000") != std::string::npos;
    EXPECT_TRUE(isNew || content(out) == "old") << content(out);
    EXPECT_EQ(rig.cell(0, 7), "CQ") << "the log is as it was";
    EXPECT_TRUE(refused || rig.log->view().Notice.find("log.csv") != std::string::npos);
    EXPECT_TRUE(isNew || thrown || !rig.log->view().Notice.empty()) << "not without a word";
    writeFileSafely(out, "old");
  };
  const auto work = [&] {
    rig.dialogs.choice = Choice::Ok;
    rig.dialogs.script = {pathText(out)};
    rig.log->Export_Click();
    rig.settle();
  };
  withEachRequestRefused(work, check);
}

TEST(NoMemory, AListThatSeveralThreadsWriteIsWholeOrTheLackIsTold) {
  // Few of them need memory of their own, so that there are not too many requests to refuse.
  lists::Entries entries;
  for (int i = 0; i < 10'000; ++i)
    entries.push_back(std::make_shared<const lists::Entry>(
        lists::Entry{1'000'000 + i, "A long name of station " + std::to_string(std::max(i, 5)), -1,
                     0, "A long name of group " + std::to_string(i % 5)}));
  for (const formats::Format format : {formats::Format::Gqrx, formats::Format::SdrPlusPlus}) {
    const std::string whole = formats::writeList(entries, format).text;
    std::string text;
    const auto check = [&](bool refused, bool thrown) {
      EXPECT_TRUE(thrown ? refused && text.empty() : text == whole);
      text.clear();
    };
    withEachRequestRefused([&] { text = formats::writeList(entries, format).text; }, check);
  }
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
  const auto settle = [&] {
    for (; play.core->isLoading(); std::this_thread::yield()) play.core->deliverEvents();
  };
  const auto check = [&](bool refused, bool thrown) {
    settle();
    const bool isNew = !play.name(7'070'000).empty();
    EXPECT_NE(isNew, !play.name(6'070'000).empty()) << "one of the two, whole";
    EXPECT_TRUE(isNew || thrown || !play.core->loadWords().empty());
    EXPECT_TRUE(isNew || refused);
    play.import(before);
    EXPECT_EQ(play.name(6'070'000), "S") << play.core->loadWords();
  };
  const auto work = [&] {
    play.core->importSchedule(next);
    settle();
  };
  withEachRequestRefused(work, check);
}

}  // namespace
}  // namespace kelvane
