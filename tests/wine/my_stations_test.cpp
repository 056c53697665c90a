#include <windows.h>

#include <gtest/gtest.h>

#include <fstream>
#include <sstream>

#include "tests/wine/instance.h"
#include "tests/wine/open_dialog.h"
#include "tests/wine/running_panel.h"
#include "ui/control_ids.h"

namespace kelvane::wine {
namespace {

constexpr int kFileNameField = 0x47c;

/// The real program with a list of the operator's own that has one station.
class MyStationsWindow : public testing::Test {
 protected:
  MyStationsWindow() {
    instance_.writeReceivers("Version=1\r\n[Receiver 1]\r\nName=Attic\r\n");
    write("my-stations.txt",
          "kHz ; Name ; Mode ; Width ; Group\r\n9420 ; Athens ; AM ; 6000 ; ERT\r\n");
  }
  void SetUp() override {
    panel_ = std::make_unique<RunningPanel>(instance_.name());
    ASSERT_TRUE(panel_->settledOn(0));
  }

  void write(const char* name, const std::string& text) const {
    std::ofstream(instance_.folder() / name, std::ios::binary) << text;
  }
  std::string file() const {
    std::stringstream content;
    content << std::ifstream(instance_.folder() / "my-stations.txt", std::ios::binary).rdbuf();
    return content.str();
  }
  bool holds(const std::string& part) const {
    return eventually([&] { return file().find(part) != std::string::npos; });
  }
  bool bandIs(const std::string& part) const {
    return eventually([&] { return panel_->text(id::Band).find(part) != std::string::npos; });
  }
  bool says(const OpenDialog& list, const std::string& part) const {
    return eventually([&] { return list.text(id::StnStatus).find(part) != std::string::npos; });
  }

  const Instance instance_{L"TestMyStations"};
  std::unique_ptr<RunningPanel> panel_;
};

TEST_F(MyStationsWindow, NamesTunesTakesAndTakesBack) {
  panel_->type("9420\r");
  EXPECT_TRUE(bandIs("Athens")) << panel_->text(id::Band);
  panel_->type("7123\r");
  ASSERT_TRUE(eventually([&] { return panel_->digits() == "  7123000"; }));
  panel_->type("y");
  const OpenDialog list(*panel_, L"KelvaneStations");
  ASSERT_TRUE(list.isOpen());
  EXPECT_TRUE(says(list, "1 of 1 stations")) << list.text(id::StnStatus);
  list.press(IDOK);
  EXPECT_TRUE(eventually([&] { return panel_->digits() == "  9420000"; })) << panel_->digits();
  EXPECT_TRUE(eventually([&] { return panel_->text(id::ModEvent) == "AM"; }));
  panel_->type("5000\r");
  ASSERT_TRUE(eventually([&] { return panel_->digits() == "  5000000"; }));
  list.press(id::StnTake);
  EXPECT_TRUE(says(list, "5000 kHz is in the list now")) << list.text(id::StnStatus);
  EXPECT_TRUE(holds("5000 ; ")) << file();
  list.press(id::StnUndo);
  EXPECT_TRUE(eventually([&] { return file().find("5000 ; ") == std::string::npos; }));
  EXPECT_TRUE(holds("9420 ; Athens"));
  list.press(IDCANCEL);
  EXPECT_TRUE(list.gone());
}

TEST_F(MyStationsWindow, TakesInAListOfAnotherProgramAfterItWasShown) {
  write("theirs.csv",
        "# Tag name          ;  color\r\n\r\n# Frequency ; Name ; Modulation ; "
        "Bandwidth; Tags\r\n  648000; Quill; AM; 10000; Mine,loud\r\nno station\r\n");
  panel_->type("y");
  const OpenDialog list(*panel_, L"KelvaneStations");
  ASSERT_TRUE(says(list, "1 of 1 stations"));
  list.press(id::StnImport);
  const OpenDialog chooser(*panel_, L"#32770");
  ASSERT_TRUE(chooser.isOpen());
  Sleep(200);
  chooser.type(kFileNameField, (instance_.folder() / "theirs.csv").wstring());
  chooser.press(IDOK);
  const OpenDialog import(*panel_, L"KelvaneImport");
  ASSERT_TRUE(import.isOpen());
  const auto words = [&] { return import.text(id::ImpWords); };
  EXPECT_TRUE(eventually([&] { return words().find("gqrx bookmarks: 1") == 0; })) << words();
  EXPECT_EQ(file().find("Quill"), std::string::npos) << "nothing is taken in unasked";
  import.press(IDOK);
  EXPECT_TRUE(import.gone());
  EXPECT_TRUE(holds("648 ; Quill ; AM ; 10000 ; Mine ; loud")) << file();
  EXPECT_TRUE(says(list, "2 of 2 stations")) << list.text(id::StnStatus);
  list.press(id::StnUndo);
  EXPECT_TRUE(says(list, "1 of 1 stations"));
}

}  // namespace
}  // namespace kelvane::wine
