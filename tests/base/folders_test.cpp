#include <gtest/gtest.h>

#include <algorithm>
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

/// The header of a file's name, or of the longer subject that it continues: grid_keys.cpp goes on
/// with grid.h. Empty where it has none.
fs::path headerOf(const fs::path& file) {
  for (const fs::path& folder : {file.parent_path(), headersOf(file)}) {
    for (std::string header = file.stem().string();; header.resize(header.rfind('_'))) {
      if (fs::exists(folder / (header + ".h"))) return folder / (header + ".h");
      if (header.find('_') == std::string::npos) break;
    }
  }
  return {};
}

/// What other programs' lists are, is declared once for all of them; what the system starts needs
/// no header.
bool needsNoHeader(const fs::path& file) {
  const std::string name = file.stem().string();
  return file.parent_path().filename() == "formats" || name.ends_with("_dll") || name == "win_main";
}

TEST(Folders, HaveForEachFileTheHeaderOfItsName) {
  std::string upward;
  for (const auto& [folder, uses] : allowed(upward)) {
    for (const auto& entry : fs::recursive_directory_iterator(kHouse / folder)) {
      if (entry.path().extension() != ".cpp") continue;
      EXPECT_TRUE(needsNoHeader(entry.path()) || !headerOf(entry.path()).empty()) << entry.path();
    }
  }
}

/// The headers of the standard library that the house uses most, and what it has from each.
const std::map<std::string, Folders> kStandard{
    {"algorithm",
     {"sort", "stable_sort", "min", "max", "clamp", "find_if", "any_of", "all_of", "none_of",
      "count_if", "copy", "ranges", "lower_bound", "rotate", "replace"}},
    {"array", {"array"}},
    {"atomic", {"atomic"}},
    {"charconv", {"to_chars", "from_chars"}},
    {"chrono", {"chrono"}},
    {"cmath", {"lround", "sqrt", "floor", "abs", "pow", "sin", "cos", "hypot"}},
    {"condition_variable", {"condition_variable"}},
    {"deque", {"deque"}},
    {"filesystem", {"filesystem"}},
    {"functional", {"function", "hash", "less"}},
    {"iterator", {"back_inserter", "next", "prev", "distance", "size"}},
    {"limits", {"numeric_limits"}},
    {"map", {"map"}},
    {"memory", {"unique_ptr", "shared_ptr", "weak_ptr", "make_unique", "make_shared"}},
    {"mutex", {"mutex", "lock_guard", "unique_lock", "scoped_lock"}},
    {"numeric", {"accumulate", "iota"}},
    {"optional", {"optional", "nullopt"}},
    {"set", {"set"}},
    {"span", {"span"}},
    {"sstream", {"ostringstream", "istringstream"}},
    {"string", {"string", "to_string"}},
    {"string_view", {"string_view"}},
    {"system_error", {"error_code", "system_error", "generic_category"}},
    {"thread", {"thread", "this_thread"}},
    {"tuple", {"tuple", "tie"}},
    {"utility", {"move", "exchange", "pair", "swap", "forward"}},
    {"variant", {"variant", "visit", "monostate"}},
    {"vector", {"vector"}},
};

/// What a file includes of the standard library and, below `used`, what it names of it.
Folders standardIncludes(const fs::path& path, Folders* used = nullptr) {
  Folders headers;
  std::ifstream file(path);
  for (std::string line; std::getline(file, line);) {
    if (line.starts_with("#include <")) headers.insert(line.substr(10, line.find('>') - 10));
    line.resize(std::min(line.find("//"), line.size()));
    for (auto at = line.find("std::"); used && at != std::string::npos;) {
      const auto end = line.find_first_not_of("abcdefghijklmnopqrstuvwxyz_0123456789", at + 5);
      used->insert(line.substr(at + 5, end - at - 5));
      at = line.find("std::", at + 5);
    }
  }
  return headers;
}

/// The standard headers that a file needs and that neither it nor the header of its name includes.
std::string missingIncludes(const fs::path& file) {
  Folders used, missing;
  Folders headers = standardIncludes(file, &used);
  if (file.extension() == ".cpp") headers.merge(standardIncludes(headerOf(file)));
  for (const auto& [header, names] : kStandard) {
    for (const std::string& name : names) {
      if (used.contains(name) && !headers.contains(header)) missing.insert(header);
    }
  }
  std::string words;
  for (const std::string& header : missing) words += "<" + header + "> ";
  return words;
}

TEST(Folders, NameInEachFileTheStandardHeadersThatItUses) {
  std::string upward;
  for (const auto& [folder, uses] : allowed(upward)) {
    for (const auto& entry : fs::recursive_directory_iterator(kHouse / folder)) {
      const auto extension = entry.path().extension();
      if ((extension != ".h" && extension != ".cpp") || seesWindows(entry.path())) continue;
      EXPECT_EQ(missingIncludes(entry.path()), "") << entry.path();
    }
  }
}

}  // namespace
}  // namespace kelvane
