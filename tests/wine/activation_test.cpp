// How a component's file beside the program is opened, and what becomes of one that is damaged.
#include "contract/win32/activation.h"

#include "contract/Ambrel.h"
#include "contract/Sondrel.h"
#include "tests/wine/com_support.h"

namespace kelvane::test {

namespace {

using com::openComponent;

std::string library(const wchar_t* name) { return fileContent(com::programFolder() / name); }

/// The library with the machine that it was built for changed.
std::string forOtherMachine(std::string dll) {
  const unsigned char low = dll[0x3c], high = dll[0x3d];
  const std::size_t header = low | high << 8;
  const bool wide = sizeof(void*) == 8;
  dll[header + 4] = static_cast<char>(wide ? 0x4c : 0x64);  // 014c is 32 bits wide, 8664 is 64
  dll[header + 5] = static_cast<char>(wide ? 0x01 : 0x86);
  return dll;
}

}  // namespace

class Activation : public ComTest {
 protected:
  com::OpenedComponent open() {
    return openComponent(folder.path(), L"Ambrel.dll", __uuidof(Ambrel));
  }
  TemporaryFolder folder;
};

TEST_F(Activation, OpensTheFileBesideTheProgram) {
  folder.write(L"Ambrel.dll", library(L"Ambrel.dll"));
  const auto opened = open();
  ASSERT_TRUE(opened) << opened.reason;
  EXPECT_TRUE(com::queryFor<IAmbrel>(opened.object.get()));
  EXPECT_EQ(opened.reason, "");
  EXPECT_NE(GetModuleHandleW((folder / L"Ambrel.dll").c_str()), nullptr) << "this very file";
}

TEST_F(Activation, SaysWhyADamagedFileIsNoComponent) {
  const std::string whole = library(L"Ambrel.dll");
  const std::pair<const char*, std::string> contents[] = {
      {"empty", ""},
      {"a text", "This is no component.\r\n"},
      {"junk", std::string(70'000, '\xcd')},
      {"begins like a program", "MZ" + std::string(2'000, '\xff')},
      {"cut off", whole.substr(0, 1'000)},
      {"cut off in its code", whole.substr(0, 20'000)},
      {"for another machine", forOtherMachine(whole)},
      {"another component", library(L"Sondrel.dll")},
  };
  for (const auto& [what, content] : contents) {
    folder.write(L"Ambrel.dll", content);
    const auto opened = open();
    EXPECT_FALSE(opened) << what;
    EXPECT_NE(opened.reason.find("beside the program"), std::string::npos) << what << opened.reason;
    EXPECT_EQ(GetModuleHandleW((folder / L"Ambrel.dll").c_str()), nullptr) << what;
  }
}

TEST_F(Activation, SaysWhyAnythingElseOfThatNameIsNoComponent) {
  wchar_t system[MAX_PATH];
  GetSystemDirectoryW(system, MAX_PATH);
  std::filesystem::copy_file(std::filesystem::path(system) / "version.dll", folder / L"Ambrel.dll");
  EXPECT_FALSE(open()) << "a library without any class";
  std::filesystem::remove(folder / L"Ambrel.dll");
  std::filesystem::create_directory(folder / L"Ambrel.dll");
  EXPECT_FALSE(open()) << "a folder";
}

TEST_F(Activation, SaysThatThereIsNoneWhereNoFileIsAndNoneIsRegistered) {
  const auto opened = open();
  EXPECT_FALSE(opened);
  EXPECT_NE(opened.reason.find("80040154"), std::string::npos) << opened.reason;
  EXPECT_FALSE(openComponent(folder / L"missing", L"Ambrel.dll", __uuidof(Ambrel)));
}

}  // namespace kelvane::test
