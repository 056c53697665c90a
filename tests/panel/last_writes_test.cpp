#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "base/folder.h"
#include "base/second_place.h"
#include "tests/fakes/channel_rig.h"
#include "tests/fakes/temp_folder.h"

namespace kelvane {
namespace {

namespace fs = std::filesystem;
using fakes::PanelRig;
using fakes::SondrelRig;

/// A panel whose receiver's channels can be written to no file of their own: a folder has its name.
class LastWritesTest : public testing::Test {
 protected:
  LastWritesTest() {
    fs::create_directories(channels_ / "in the way");
    rig_.start();
    rig_.sondrel.core.SetRxChannel(0, 1, 5'000'000, 0, 0, 6000, 0, 0);
    rig_.sondrel.core.SetRxChannel(0, 2, 6'000'000, 0, 0, 6000, 0, 0);
    rig_.sondrel.core.ClearRxChannel(0, 2);
  }
  ~LastWritesTest() override {
    for (const fs::path& place : secondPlaces(channels_)) fs::remove_all(place);
  }
  /// The channels of the next start, for which nothing is in the way.
  Hz afterwards(Channel channel) {
    fs::remove_all(channels_);
    SondrelRig next(rig_.sondrel.dataFolder);
    next.open();
    next.run(milliseconds(1000));
    next.core.finishWriting();
    next.core.SelectRxChannel(0, channel);
    return next.core.GetRxChannel(0) == channel ? next.core.GetRxFrequency(0, kTuned).value() : -1;
  }

  PanelRig rig_{"[Receiver 1]\nName=A\nChannels=0-9\nFrequency=7000000\n"};
  fs::path channels_ = rig_.sondrel.instanceFolder() / "Memories" / "A.txt";
};

TEST_F(LastWritesTest, OfferAnotherPlaceForWhatTheDiskRefuses) {
  const fs::path chosen = rig_.sondrel.folder.path() / "chosen.txt";
  rig_.fileDialogs.choice = Choice::Ok;
  // The dialog may be closed by mistake.
  rig_.fileDialogs.script = {std::nullopt, pathText(chosen)};
  rig_.panel->unload({});
  ASSERT_EQ(rig_.fileDialogs.boxes.size(), 2u);
  EXPECT_NE(rig_.fileDialogs.boxes[0].find("Channels of A: "), std::string::npos);
  EXPECT_NE(rig_.fileDialogs.boxes[0].find("next start"), std::string::npos);
  EXPECT_NE(readFile(chosen, 1000).value_or("").find("1; 5000000;"), std::string::npos);
  EXPECT_EQ(LastWrites::takeNote(rig_.settings), "");
}

TEST(LastWritesElsewhere, LeaveTheFileWhereItWasThatTheyCouldNotReplace) {
  const fakes::TempFolder folder;
  const fs::path file = folder.path() / "scratchpad.txt";
  writeFileSafely(file, "the log of last year");
  fakes::ScriptedDialogs dialogs;
  dialogs.choice = Choice::Ok;
  dialogs.script = {pathText(file), pathText(folder.path() / "other.txt")};
  FileFlows flows(dialogs, dialogs);
  fakes::MapSettings settings;
  int tries = 0;
  const auto full = [&tries](const std::string&) -> Result<> {
    if (tries++ == 0) return Failure{"The disk is full."};
    return {};
  };
  LastWrites(dialogs, flows, settings, Ending::ByOperator)
      .finish({[] { return Failure{"It was not saved."}; }, "scratchpad", "txt", full});
  EXPECT_EQ(tries, 2) << "another place was offered again";
  EXPECT_EQ(readFile(file, 1000).value_or("gone"), "the log of last year");
}

TEST_F(LastWritesTest, AreToldAtTheNextStartWhereTheSystemEnds) {
  rig_.settings.refuseWritesTo("MainTop");
  rig_.panel->unload({}, Ending::WithSystem);
  EXPECT_TRUE(rig_.fileDialogs.boxes.empty()) << "nobody sits there any more";
  const std::string note = LastWrites::takeNote(rig_.settings);
  EXPECT_NE(note.find("Channels of A: "), std::string::npos) << note;
  EXPECT_NE(note.find("place could not be saved"), std::string::npos) << note;
  EXPECT_EQ(LastWrites::takeNote(rig_.settings), "") << "once";
}

TEST_F(LastWritesTest, ComeBackIntoTheirFileFromEitherSecondPlace) {
  const auto places = secondPlaces(channels_);
  for (const fs::path& place : places) {
    rig_.sondrel.core.FinishRxWriting(0, "");
    EXPECT_TRUE(fs::is_regular_file(place)) << place;
    EXPECT_EQ(afterwards(1), 5'000'000);
    EXPECT_FALSE(fs::exists(place)) << "its file has it";
    EXPECT_NE(readFile(channels_, 1000).value_or("").find("1; 5000000;"), std::string::npos);
    fs::remove(channels_);
    fs::create_directories(channels_ / "in the way");
    fs::create_directories(places.front() / "in the way too");
  }
  EXPECT_EQ(afterwards(1), 7'000'000) << "nothing is left of it: the channel is empty";
}

TEST_F(LastWritesTest, TheReceiversThatGoWithoutBeingAskedKeepThemToo) {
  rig_.sondrel.core.OpenRxConfig("Other", 0);
  EXPECT_FALSE(rig_.sondrel.windows.told.empty());
  EXPECT_EQ(afterwards(1), 5'000'000);
}

TEST(UnsavedEdits, GoToTheReceiverOrGoOrStayAsTheOperatorSaysAndIntoAFileWhereNobodySits) {
  struct End {
    Choice answer;
    Ending how;
    bool ends;
    const char* stored;
    std::size_t files;
  };
  for (const End& end : {End{Choice::Ok, Ending::ByOperator, true, "1; 5000000;", 0},
                         End{Choice::No, Ending::ByOperator, true, "1; 7000000;", 0},
                         End{Choice::Cancel, Ending::ByOperator, false, "1; 7000000;", 0},
                         End{Choice::Cancel, Ending::WithSystem, true, "1; 7000000;", 1}}) {
    fakes::ChannelRig rig;
    rig.start();
    rig.sondrel.core.SetRxChannel(0, 1, 7'000'000, 0, 0, 6000, 0, 0);
    rig.open();
    rig.enter(1, 1, "5000000");
    rig.fileDialogs.choice = end.answer;
    const bool asked = end.how == Ending::ByOperator;
    if (asked) {
      EXPECT_EQ(rig.panel->mayEnd(), end.ends);
      EXPECT_THAT(rig.fileDialogs.boxes, testing::ElementsAre(testing::EndsWith("|SaveOrNot")));
    }
    if (end.ends)
      rig.panel->unload({}, end.how);
    else
      EXPECT_EQ(rig.cell(1, 1) + rig.channelView().caption, "5000000Channels [unsaved edits]");
    EXPECT_EQ(rig.fileDialogs.boxes.size(), asked ? 1u : 0u) << "asked once";
    rig.finishWriting();
    const auto memories = rig.sondrel.instanceFolder() / "Memories" / "A.txt";
    EXPECT_NE(rig.content(memories).find(end.stored), std::string::npos) << rig.content(memories);
    const auto kept = entriesIn(rig.folder() / "Backups");
    ASSERT_EQ(kept.size(), end.files);
    if (!kept.empty()) {
      EXPECT_NE(rig.content(kept[0]).find("5000000;"), std::string::npos);
    }
    EXPECT_EQ(LastWrites::takeNote(rig.settings).empty(), asked) << "told at the next start";
  }
}

}  // namespace
}  // namespace kelvane
