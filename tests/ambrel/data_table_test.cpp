#include "components/ambrel/data_table.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "components/ambrel/own_files.h"
#include "components/ambrel/source_view.h"
#include "contract/modes.h"
#include "tests/ambrel/ambrel_play.h"

namespace kelvane::ambrel {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;

constexpr const char* kPlan =
    "Low ; 9000 ; 5000000 ; 100 ; CW ; 500\nHigh ; 5000000 ; 30000000 ; 1000 ; USB ; 2400\n";

/// Two small sets and a plan of two bands.
class Tables : public testing::Test {
 protected:
  Tables() {
    play.write(play.dataFolder() / "known-a.txt",
               "[Time]\n5000 ; WWV ; seconds ; Fort Collins ; AM ; 6000\n10000 ; WWV\n"
               "[Sea]\n2182 ; Calling ;;; USB\n5000 ; Other\n");
    play.write(play.dataFolder() / "bandplan-r1.txt", kPlan);
    play.start();
  }
  /// Reads everything anew, to the end.
  void reload() {
    ASSERT_TRUE(play.core->reload());
    while (play.core->isLoading()) play.deliver();
  }

  AmbrelPlay play;
};

TEST_F(Tables, ShowTheBandPlanAndFindTheBandOfAFrequency) {
  DataTable data(*play.core);
  EXPECT_THAT(data.tables(),
              ElementsAre("Band plan, region 1", "Time, 2 frequencies", "Sea, 2 frequencies"));
  const std::size_t row = data.rowAt(5'000'000);
  EXPECT_EQ(data.cell(row, 0), "5000");
  EXPECT_EQ(data.cell(row, 1), "30000");
  EXPECT_EQ(data.cell(row, 2), "High");
  EXPECT_EQ(data.cell(row, 3) + data.cell(row, 4) + data.cell(row, 5), "1000USB2400");
  EXPECT_EQ(data.cell(data.rowAt(4'999'999), 2), "Low");
  EXPECT_EQ(data.rowAt(-1), data.rows());
  EXPECT_EQ(data.cell(data.rows(), 0), "");
  data.choose(row);
  play.deliver();
  ASSERT_EQ(play.events.selected.size(), 1u);
  EXPECT_EQ(play.events.selected[0].frequency, 5'000'000);
  EXPECT_EQ(play.events.selected[0].mode, static_cast<Setting>(Mode::Usb));
}

TEST_F(Tables, ShowOneSetAndTheStationNearestToAFrequency) {
  DataTable data(*play.core);
  data.look(2);
  data.look(99);
  ASSERT_EQ(data.rows(), 2u);
  EXPECT_EQ(data.columns().size(), 8u);
  EXPECT_EQ(data.cell(0, 0) + data.cell(0, 1), "2182Calling");
  EXPECT_EQ(data.cell(1, 1), "Other") << "not the other set's station at this frequency";
  EXPECT_EQ(data.rowAt(0), 0u);
  EXPECT_EQ(data.rowAt(3'500'000), 0u);
  EXPECT_EQ(data.rowAt(3'600'000), 1u);
  EXPECT_EQ(data.rowAt(29'000'000), 1u);
  data.choose(0);
  data.choose(2);
  play.deliver();
  ASSERT_EQ(play.events.selected.size(), 1u);
  EXPECT_EQ(play.events.selected[0].frequency, 2'182'000);
  EXPECT_EQ(play.events.selected[0].mode, static_cast<Setting>(Mode::Usb));
}

TEST_F(Tables, FollowAnotherRegionAndOtherDataAndStayWithTheSet) {
  DataTable data(*play.core);
  EXPECT_FALSE(data.follow());
  play.core->NextFrqRegion();
  EXPECT_TRUE(data.follow());
  EXPECT_EQ(data.tables().front(), "Band plan, region 2");
  data.look(2);
  play.write(play.dataFolder() / "known-0.txt", "[First]\n1000 ; X\n");
  reload();
  EXPECT_TRUE(data.follow());
  EXPECT_EQ(data.table(), 3u);
  EXPECT_EQ(data.cell(0, 1), "Calling");
  std::filesystem::remove(play.dataFolder() / "known-a.txt");
  reload();
  EXPECT_TRUE(data.follow());
  EXPECT_EQ(data.table(), 0u) << "the set is gone";
}

TEST_F(Tables, OwnFilesAreMadeOnceAndUsedWhenReadAnew) {
  const DataFiles& files = *play.core->files();
  const OwnFile plan = ownPlanFile(files, 0);
  ASSERT_TRUE(plan) << plan.reason();
  EXPECT_EQ(*plan, play.ownFolder() / "bandplan-r1.txt");
  play.write(*plan, std::string(kPlan) + "# mine\n");
  ownPlanFile(files, 0);
  EXPECT_THAT(*readFile(*plan, 10'000), HasSubstr("# mine")) << "never written over";
  EXPECT_THAT(ownPlanFile(files, 2).reason(), HasSubstr("bandplan-r3.txt"));

  const OwnFile known = ownKnownFile(files);
  play.write(*known, *readFile(*known, 10'000) + "7000 ; Mine\n");
  play.core->SetFrqFrequency(6'000'000);
  play.write(*plan, "All ; 9000 ; 30000000 ; 100 ; CW ; 500\n");
  reload();
  EXPECT_EQ(play.core->GetFrqBandName().value(), "All") << "at the frequency it stood at";
  EXPECT_EQ(play.name(7'000'000), "Mine");
  play.write(*plan, "All ; 9000 ; 8000000 ; 100 ; CW ; 500\n");
  reload();
  EXPECT_EQ(play.core->GetFrqBandName().value(), "High") << "the shipped one";
  const auto rows = sourceRows(*play.core);
  const auto own = std::find_if(rows.begin(), rows.end(), [](const SourceRow& row) {
    return row.kind == "Band plan R1" && row.owner == "own";
  });
  ASSERT_NE(own, rows.end());
  EXPECT_THAT(own->problems, HasSubstr("Not used: the plan ends below 30 MHz"));
}

}  // namespace
}  // namespace kelvane::ambrel
