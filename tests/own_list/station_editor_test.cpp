#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <atomic>
#include <filesystem>
#include <fstream>

#include "base/unchanging_file.h"
#include "own_list/station_editor.h"
#include "tests/fakes/panel_rig.h"
#include "ui/control_ids.h"
#include "ui/key_codes.h"

namespace kelvane {
namespace {

using testing::HasSubstr;
using testing::Not;

/// A disk that rests no longer than it must, and may be slow to read.
struct SlowDisk : FileSteps {
  FileReading read(const std::filesystem::path& file, std::size_t limit) override {
    // Never for ever: a panel that waits for it fails the test.
    for (int time = 0; slow && time < 2000; ++time) FileSteps::pause(milliseconds(1));
    FileReading reading = FileSteps::read(file, limit);
    ++reads;
    return reading;
  }
  void pause(milliseconds) override { FileSteps::pause(milliseconds(1)); }

  std::atomic<bool> slow = false;
  std::atomic<int> reads = 0;
};

/// The operator's list on the whole panel; another program has written two stations into it.
class MyStations : public testing::Test {
 protected:
  MyStations() {
    write("my-stations.txt",
          "# mine\nkHz ; Name ; Mode ; Group\n7000 ; One ; USB ; A\n9420 ; Two ; AM ; B\n");
    rig.disk = std::make_shared<SlowDisk>();
    rig.start();
    rig.type("y");
    settle();
  }

  void write(const std::string& name, const std::string& text) {
    std::filesystem::create_directories(rig.folder());
    std::ofstream(rig.folder() / name, std::ios::binary) << text;
  }
  std::string file() const {
    std::string text;
    std::ifstream in(rig.folder() / "my-stations.txt", std::ios::binary);
    std::getline(in, text, '\0');
    return text;
  }
  StationEditor& editor() { return *rig.dialogs.stations; }
  SlowDisk& disk() { return static_cast<SlowDisk&>(*rig.disk); }
  void settle() {
    do {
      editor().deliver();
    } while (editor().store().busy() || (editor().import() && editor().import()->busy()));
    editor().deliver();
  }
  std::string cell(GridRow row, int column) { return editor().grid().table().cell(row, column); }
  void edit(GridRow row, int column, const std::string& text) {
    editor().grid().select({row, column});
    editor().grid().begin(Grid::Begin::Replace);
    editor().grid().edited(text);
    editor().grid().commit();
    settle();
  }
  void press(int key, int shift = 0) {
    editor().grid().keyDown(key, shift);
    settle();
  }

  fakes::PanelRig rig;
};

TEST_F(MyStations, ThePresentSettingIsTakenWithTheNameKnownThere) {
  rig.type("5000\r");
  rig.run(milliseconds(500));
  rig.type(std::string(1, 25));
  settle();
  ASSERT_EQ(editor().table().rows(), 3u);
  EXPECT_EQ(cell(0, StationGrid::Khz), "5000");
  EXPECT_NE(cell(0, StationGrid::Name), "");
  EXPECT_NE(cell(0, StationGrid::Mode), "");
  EXPECT_EQ(editor().grid().current().row, 0u);
  EXPECT_THAT(file(), HasSubstr("5000 ; " + cell(0, StationGrid::Name)));
  rig.type("7201\r");
  rig.run(milliseconds(500));
  rig.type(std::string(1, 25));
  settle();
  EXPECT_EQ(cell(2, StationGrid::Name), rig.view().Band.text) << "the band's where nobody is known";
}

TEST_F(MyStations, AnEditReachesAllMarkedRowsAndIsOneStep) {
  press(key::Space);
  EXPECT_TRUE(editor().grid().clicked({1, StationGrid::Mark}));
  EXPECT_FALSE(editor().grid().clicked({1, StationGrid::Name}));
  edit(1, StationGrid::Group, "Both");
  EXPECT_EQ(cell(0, StationGrid::Group) + cell(1, StationGrid::Group), "BothBoth");
  edit(0, StationGrid::Khz, "nothing");
  EXPECT_EQ(cell(0, StationGrid::Khz), "7000");
  press('Z', key::CtrlHeld);
  EXPECT_EQ(cell(0, StationGrid::Group) + cell(1, StationGrid::Group), "AB");
  press('Y', key::CtrlHeld);
  EXPECT_EQ(cell(0, StationGrid::Group) + cell(1, StationGrid::Group), "BothBoth");
  press(key::Delete);
  EXPECT_EQ(editor().table().rows(), 0u);
  editor().undo();
  settle();
  EXPECT_EQ(editor().table().rows(), 2u);
  EXPECT_THAT(file(), HasSubstr("Both"));
}

TEST_F(MyStations, MarksThatAFilterHidesReachNothing) {
  press(key::Space);
  editor().setFilter({"", "B", false});
  editor().addEmpty();
  settle();
  EXPECT_THAT(editor().view().status, HasSubstr("1 marked (1 of them not shown)"));
  rig.fileDialogs.script.push_back((rig.folder() / "out.csv").string());
  editor().exportAs(formats::Format::Own);
  while (editor().view().status.find("written to") == std::string::npos) editor().deliver();
  EXPECT_THAT(editor().view().status, HasSubstr("2 stations were written"));
  std::ifstream in(rig.folder() / "out.csv", std::ios::binary);
  const std::string text(std::istreambuf_iterator<char>(in), {});
  EXPECT_THAT(text, Not(HasSubstr("; One")));
  press(key::Delete);
  editor().setFilter({});
  EXPECT_EQ(editor().table().rows(), 2u);
  EXPECT_EQ(cell(0, StationGrid::Name), "One");
}

TEST_F(MyStations, ARowThatChangesGoesToItsPlaceInAnyOrder) {
  edit(0, StationGrid::Khz, "9500");
  EXPECT_EQ(cell(0, StationGrid::Name) + cell(1, StationGrid::Name), "TwoOne");
  editor().grid().headerClicked(StationGrid::Name);
  editor().grid().headerClicked(StationGrid::Name);
  settle();
  EXPECT_EQ(cell(0, StationGrid::Name) + cell(1, StationGrid::Name), "TwoOne") << "from Z to A";
  edit(0, StationGrid::Name, "A");
  EXPECT_EQ(cell(0, StationGrid::Name) + cell(1, StationGrid::Name), "OneA");
  editor().addEmpty();
  settle();
  EXPECT_EQ(cell(2, StationGrid::Name), "");
  editor().undo();
  settle();
  EXPECT_EQ(editor().table().rows(), 2u);
}

TEST_F(MyStations, ALongImportIsDroppedWithoutWaiting) {
  write("long.csv", "kHz,Name\n1000,x\n");
  const auto before = disk().reads.load();
  disk().slow = true;
  for (int time = 0; time < 3; ++time) editor().importFile(rig.folder() / "long.csv");
  editor().dropImport();
  EXPECT_FALSE(editor().import());
  EXPECT_EQ(disk().reads, before) << "who drops it has waited until it was read";
  disk().slow = false;
  editor().importFile(rig.folder() / "long.csv");
  settle();
  EXPECT_THAT(editor().import()->words(), HasSubstr("Adds 1,"));
}

TEST_F(MyStations, AStationOfSeveralTimesIsKnownByEachOfThem) {
  const std::string head = "kHz,Name,UTC\n", late = "6000,One,1800-1900\n",
                    early = "6000,One,0500-0600\n";
  const auto import = [this](const std::string& text) {
    write("times.csv", text);
    editor().importFile(rig.folder() / "times.csv");
    settle();
    return editor().import()->words();
  };
  EXPECT_THAT(import(head + late + early), HasSubstr("Adds 2"));
  editor().takeIn();
  settle();
  edit(1, StationGrid::Name, "One");
  EXPECT_EQ(cell(1, StationGrid::Name) + cell(1, StationGrid::Utc), "One0500-0600");
  EXPECT_THAT(import(head + late + early), HasSubstr("Adds 0, changes 0"));
  EXPECT_THAT(import(head + early + late), HasSubstr("Adds 0, changes 0"));
}

TEST_F(MyStations, TuningToOneAppliesModeAndNearestFilter) {
  edit(1, StationGrid::Width, "2500");
  editor().grid().select({1, StationGrid::Khz});
  editor().tuneTo();
  rig.run(milliseconds(500));
  EXPECT_EQ(rig.receiver().GetRxFrequency(0, kTuned), 9420000);
  EXPECT_EQ(rig.receiver().GetRxMode(0), 0);
  EXPECT_EQ(rig.receiver().GetRxFilter(0), 3000) << "the nearest that it has";
}

TEST_F(MyStations, WhatAnotherProgramWroteMeanwhileStays) {
  write("my-stations.txt",
        "# mine\nkHz ; Name ; Mode ; Group\n9420 ; Two ; AM ; B\n100 ; Theirs\nno station\n");
  edit(0, StationGrid::Name, "Ours");
  settle();
  EXPECT_THAT(file(), HasSubstr("7000 ; Ours"));
  EXPECT_THAT(file(), HasSubstr("100 ; Theirs"));
  EXPECT_THAT(file(), HasSubstr("# mine"));
  EXPECT_THAT(file(), HasSubstr("no station"));
  EXPECT_EQ(editor().table().rows(), 3u);
  EXPECT_EQ(cell(0, StationGrid::Khz), "100");
}

TEST_F(MyStations, AnImportShowsLineByLineWhatItDoesAndOneUndoTakesItBack) {
  write("theirs.csv",
        "Freq (kHz);Station;Mode\n7000;one;LSB\n9420;Two;AM\n6070;New;AM\nx;bad;\n6070;New;USB\n");
  editor().importFile(rig.folder() / "theirs.csv");
  settle();
  const StationImport& import = *editor().import();
  std::string acts;
  for (GridRow row = 0; row < import.rows(); ++row)
    acts += import.cell(row, 1).substr(0, 1) + import.cell(row, 0) + " ";
  EXPECT_EQ(acts, "C2 L3 A4 L5 A6 ");
  EXPECT_EQ(import.cell(0, 8), "changes mode");
  EXPECT_THAT(import.cell(3, 8), HasSubstr("frequency"));
  EXPECT_EQ(import.cell(4, 3), "New (2)");
  editor().takeIn();
  settle();
  EXPECT_EQ(editor().table().rows(), 4u);
  EXPECT_EQ(cell(2, StationGrid::Mode), "LSB");
  EXPECT_EQ(cell(2, StationGrid::Group), "A") << "what the file leaves open stays";
  editor().importFile(rig.folder() / "theirs.csv");
  settle();
  EXPECT_THAT(editor().import()->words(), HasSubstr("Adds 0, changes 0")) << "the same once more";
  editor().dropImport();
  editor().undo();
  settle();
  EXPECT_EQ(editor().table().rows(), 2u);
  EXPECT_EQ(cell(0, StationGrid::Mode), "USB");
}

/// A disk on which another program is writing: it adds a line behind each of the first reads, or
/// while whoever reads rests a moment.
class BusyDisk : public FileSteps {
 public:
  explicit BusyDisk(int writes, bool whileResting = false)
      : writes_(writes), whileResting_(whileResting) {}
  FileReading read(const std::filesystem::path& file, std::size_t limit) override {
    file_ = file;
    FileReading reading = FileSteps::read(file, limit);
    if (!whileResting_) write();
    return reading;
  }
  void pause(milliseconds) override {
    if (whileResting_) write();
  }

 private:
  void write() {
    if (writes_-- > 0) FileSteps::append(file_, "5000,More\n");
  }

  int writes_;
  bool whileResting_;
  std::filesystem::path file_;
};

TEST_F(MyStations, AFileThatIsBeingWrittenIsReadWholeOrNotAtAll) {
  write("growing.csv", "kHz,Name\n");
  BusyDisk writesTwice(2), writesOn(1000);
  const auto file = rig.folder() / "growing.csv";
  const FileReading whole = readUnchanging(file, 1'000'000, writesTwice);
  EXPECT_EQ(whole.how, FileReading::Whole);
  EXPECT_EQ(whole.content, "kHz,Name\n5000,More\n5000,More\n");
  BusyDisk writesInPieces(1, true);
  EXPECT_EQ(readUnchanging(file, 1'000'000, writesInPieces).content, whole.content + "5000,More\n");
  const FileReading never = readUnchanging(file, 1'000'000, writesOn);
  EXPECT_EQ(never.how, FileReading::Unreadable);
  EXPECT_THAT(never.reason, HasSubstr("Another program is writing it"));
}

TEST_F(MyStations, WhatAFormCannotHoldIsSaidBeforeItIsWritten) {
  edit(0, StationGrid::Note, "kept nowhere");
  editor().exportAs(formats::Format::Gqrx);
  while (rig.fileDialogs.boxes.empty()) editor().deliver();
  ASSERT_EQ(rig.fileDialogs.boxes.size(), 1u);
  EXPECT_THAT(rig.fileDialogs.boxes[0], HasSubstr("1 station loses the note."));
  EXPECT_TRUE(rig.fileDialogs.saved.empty()) << "cancelled";
  rig.fileDialogs.choice = Choice::Ok;
  rig.fileDialogs.script.push_back((rig.folder() / "out.csv").string());
  editor().exportAs(formats::Format::Gqrx);
  while (editor().view().status.find("written to") == std::string::npos) editor().deliver();
  const formats::Reading again = [&] {
    std::ifstream in(rig.folder() / "out.csv", std::ios::binary);
    return formats::readList(std::string(std::istreambuf_iterator<char>(in), {}));
  }();
  EXPECT_EQ(again.format, formats::Format::Gqrx);
  EXPECT_EQ(again.taken.size(), 2u);
}

/// The panel with a schedule, the places of its sites, and the operator's own place.
TEST(PlaceWords, StandBesideTheStationBeforeWhatElseIsKnown) {
  fakes::PanelRig rig;
  const auto load = [&rig](const char* name, const char* text) {
    const auto file = rig.sondrel.folder.path() / name;
    std::ofstream(file, std::ios::binary) << text;
    rig.ambrel.importSchedule(file);
    while (rig.ambrel.isLoading()) rig.ambrel.deliverEvents();
  };
  rig.settings.writeText("Place", "JO21SX");
  rig.start();
  load("readme.txt",
       "IV) Transmitter-site codes.\n   G: Daventry 52N15-01W08 except:\n"
       "        w-Woofferton 52N19-02W43\n");
  load("sked-a26.csv",
       "kHz:75;Time(UTC):93;Days:59;ITU:49;Station:201;Lng:49;Target:62;Remarks:135;P:35;"
       "Start:60;Stop:60;\r\n9411;0000-2400;;G;BBC;E;Eu;w;1;;\r\n");
  rig.type("9411\r");
  rig.run(milliseconds(500));
  EXPECT_THAT(rig.view().Band.text, HasSubstr("BBC - English 0000-2400; 564 km, 277\u00B0 W; "));
  EXPECT_THAT(rig.view().Band.text, HasSubstr(" here; Woofferton"));
  rig.dialogs.inConfig = [](Config& config) {
    config.placeTyped("nowhere");
    config.cmdOK_Click();
  };
  rig.click(id::ConfigButton);
  ASSERT_EQ(rig.fileDialogs.boxes.size(), 1u);
  EXPECT_THAT(rig.fileDialogs.boxes[0], HasSubstr("\"nowhere\" is no place"));
}

}  // namespace
}  // namespace kelvane
