#include "ui/file_flows.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>

#include "tests/fakes/file_dialogs.h"
#include "tests/fakes/temp_folder.h"

namespace kelvane {
namespace {

/// Flows in a current folder of their own that holds "old.txt".
struct Flows : testing::Test {
  Flows() : before(std::filesystem::current_path()) {
    std::filesystem::current_path(folder.path());
    std::ofstream("old.txt") << "content";
  }
  ~Flows() override { std::filesystem::current_path(before); }

  std::string inFolder(const char* file) const { return (folder.path() / file).string(); }
  static std::string read(const char* file) {
    std::string content;
    std::ifstream(file) >> content;
    return content;
  }

  fakes::TempFolder folder;
  std::filesystem::path before;
  fakes::ScriptedDialogs dialogs;
  FileFlows flows{dialogs, dialogs};
  std::string name = "Left_Mem";
};

TEST_F(Flows, AskForAFileToLoadUntilOneExists) {
  dialogs.script = {"gone.txt", inFolder("no folder/old.txt"), std::string(400, 'x'),
                    folder.path().string(), "old.txt"};
  EXPECT_EQ(flows.openFile(name, "txt"), inFolder("old.txt"));
  EXPECT_EQ(dialogs.opened.size(), 5u);
  const FileRequest& asked = dialogs.opened.back();
  EXPECT_EQ(asked.title, "Select File name to be load ...");
  EXPECT_EQ(asked.folder, folder.path().string());
  EXPECT_EQ(asked.name, "Left_Mem.txt");
  EXPECT_EQ(asked.extension, "txt");
  EXPECT_EQ(asked.description, "Load Files [*.txt]");
  EXPECT_EQ(asked.pattern, "*.txt");
}

TEST_F(Flows, AnswerNothingWhenNothingIsChosen) {
  EXPECT_FALSE(flows.openFile(name, "txt"));
  EXPECT_FALSE(flows.saveFile(name, "txt"));
  dialogs.script = {"", ""};
  EXPECT_FALSE(flows.openFile(name, "txt"));
  EXPECT_FALSE(flows.saveFile(name, "txt"));
  EXPECT_EQ(dialogs.opened.size(), 2u);
  dialogs.script = {"gone.txt"};
  EXPECT_FALSE(flows.openFile(name, "txt"));
  EXPECT_TRUE(dialogs.boxes.empty());
}

TEST_F(Flows, NameANewFileWithoutAQuestion) {
  name.clear();
  dialogs.script = {"new.csv"};
  EXPECT_EQ(flows.saveFile(name, "csv"), inFolder("new.csv"));
  EXPECT_TRUE(dialogs.boxes.empty());
  const FileRequest& asked = dialogs.saved.back();
  EXPECT_EQ(asked.title, "Select File name to be used ...");
  EXPECT_EQ(asked.name, "*.csv");
  EXPECT_EQ(asked.description, "Save Files [*.csv]");
}

TEST_F(Flows, ReplaceAFileOnlyWhenAskedToAndKeepTheOldOne) {
  dialogs.script = {"old.txt", "old.txt"};
  EXPECT_FALSE(flows.saveFile(name, "txt"));
  EXPECT_EQ(read("old.txt"), "content");
  EXPECT_EQ(dialogs.boxes.back(),
            "Warning: File already exists|Do you want to replace file ?|OkCancel");
  dialogs.choice = Choice::Ok;
  EXPECT_EQ(flows.saveFile(name, "txt"), inFolder("old.txt"));
  EXPECT_FALSE(std::filesystem::exists("old.txt"));
  EXPECT_EQ(read("old.txt.bak"), "content");
}

TEST_F(Flows, SayWhyAFileCannotBeMade) {
  dialogs.choice = Choice::Ok;
  for (const char* older : {"", "2", "3", "4"})
    std::ofstream(std::string("old.txt.bak") + older) << "older";
  std::filesystem::create_directories("old.txt.bak5/taken");
  const std::pair<std::string, std::string> refused[] = {
      {inFolder("no folder/new.txt"), "There is no folder " + inFolder("no folder")},
      {std::string(400, 'x'), "too long"},
      {folder.path().string(), "is a folder"},
      {"old.txt", "cannot be replaced"},
  };
  for (const auto& [chosen, why] : refused) {
    dialogs.script = {chosen};
    EXPECT_FALSE(flows.saveFile(name, "txt")) << chosen;
    EXPECT_NE(dialogs.boxes.back().find(why), std::string::npos) << dialogs.boxes.back();
  }
  EXPECT_EQ(read("old.txt"), "content");
}

TEST_F(Flows, StartNowhereWhenTheCurrentFolderIsGone) {
  std::filesystem::create_directory("gone");
  std::filesystem::current_path("gone");
  std::filesystem::remove(folder.path() / "gone");
  dialogs.script = {inFolder("old.txt")};
  EXPECT_TRUE(flows.openFile(name, "txt"));
  EXPECT_EQ(dialogs.opened.back().folder, "");
}

}  // namespace
}  // namespace kelvane
