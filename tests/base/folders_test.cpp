#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <map>
#include <set>
#include <sstream>
#include <string>

namespace kelvane {
namespace {

namespace fs = std::filesystem;
using Folders = std::set<std::string>;

const fs::path kHouse = KELVANE_SOURCE_FOLDER;

/// The table of the house: what each folder may include, itself too; `upward` is told of a folder
/// that sees one that does not stand above it.
std::map<std::string, Folders> allowed(std::string& upward) {
  std::map<std::string, Folders> rows;
  std::ifstream table(kHouse / "folders.txt");
  for (std::string line; std::getline(table, line);) {
    const auto colon = line.find(':');
    if (line.starts_with('#') || colon == std::string::npos) continue;
    std::istringstream words(line.substr(colon + 1));
    const std::string name = line.substr(0, colon);
    Folders row{name};
    for (std::string folder; words >> folder; row.insert(folder)) {
      if (!rows.contains(folder)) upward += name + " sees " + folder + "; ";
    }
    rows[name] = row;
  }
  return rows;
}

/// The row that a path of the house belongs to, the innermost of several; empty where there is none
/// (its tests, a generated header).
std::string rowOf(const std::map<std::string, Folders>& rows, const std::string& path) {
  std::string innermost;  // a folder sorts before what lies in it
  for (const auto& [folder, uses] : rows) {
    if (path.starts_with(folder + "/")) innermost = folder;
  }
  return innermost;
}

/// The file that a quoted include names, as a path of the house.
std::string included(const std::string& line) {
  if (!line.starts_with("#include \"")) return {};
  const std::string name = line.substr(10, line.find('"', 10) - 10);
  return fs::exists(kHouse / "src" / name) ? "src/" + name : name;
}

/// Whether a file may include a system header of Windows: below win32/ alone.
bool seesWindows(const fs::path& file) {
  return file.string().find("/win32/") != std::string::npos;
}

std::string faultOf(const std::map<std::string, Folders>& rows, const fs::path& file,
                    const std::string& line) {
  const std::string from = rowOf(rows, fs::relative(file, kHouse).generic_string());
  const std::string to = rowOf(rows, included(line));
  if (!to.empty() && !rows.at(from).contains(to)) return from + " may not see " + to;
  if (line.starts_with("#include <windows.h>") && !seesWindows(file)) return "sees Windows";
  return {};
}

TEST(Folders, IncludeOnlyWhatTheTableAllowsAndTheTableHasNoCircle) {
  std::string upward;
  const auto rows = allowed(upward);
  EXPECT_EQ(upward, "");
  ASSERT_GT(rows.size(), 10U);
  int includes = 0;
  for (const auto& [folder, uses] : rows) {
    for (const auto& entry : fs::recursive_directory_iterator(kHouse / folder)) {
      if (entry.path().extension() != ".h" && entry.path().extension() != ".cpp") continue;
      std::ifstream file(entry.path());
      for (std::string line; std::getline(file, line);) {
        if (!line.starts_with("#include")) continue;
        ++includes;
        EXPECT_EQ(faultOf(rows, entry.path(), line), "") << entry.path() << ": " << line;
      }
    }
  }
  EXPECT_GT(includes, 1000);
}

/// The folder in which the header of a file lies: what is one system's alone stands below it.
fs::path headersOf(const fs::path& file) {
  const fs::path folder = file.parent_path();
  const bool ofOneSystem = folder.parent_path() == kHouse / "base";
  return ofOneSystem ? folder.parent_path() : folder;
}

/// Whether a file has the header of its name, or continues that of a longer subject: grid_keys.cpp
/// goes on with grid.h. What other programs' lists are, is declared once for all of them; what the
/// system starts needs no header.
bool hasItsHeader(const fs::path& file) {
  std::string name = file.stem().string();
  if (file.parent_path().filename() == "formats" || name.ends_with("_dll") || name == "win_main")
    return true;
  for (const fs::path& folder : {file.parent_path(), headersOf(file)}) {
    for (std::string header = name;; header.resize(header.rfind('_'))) {
      if (fs::exists(folder / (header + ".h"))) return true;
      if (header.find('_') == std::string::npos) break;
    }
  }
  return false;
}

TEST(Folders, HaveForEachFileTheHeaderOfItsName) {
  std::string upward;
  for (const auto& [folder, uses] : allowed(upward)) {
    for (const auto& entry : fs::recursive_directory_iterator(kHouse / folder)) {
      if (entry.path().extension() != ".cpp") continue;
      EXPECT_TRUE(hasItsHeader(entry.path())) << entry.path();
    }
  }
}

}  // namespace
}  // namespace kelvane
