#include "components/sondrel/radios/server_program.h"

#include <algorithm>
#include <system_error>
#include <utility>

#include "base/folder.h"
#include "base/number.h"
#include "base/text.h"

namespace kelvane::sondrel {

namespace {

namespace fs = std::filesystem;

constexpr std::size_t kMostEntries = 2000;  ///< of a folder: more is no folder of programs

std::string lettersOf(const fs::path& path) {
  const auto name = path.filename().u8string();
  return upper({reinterpret_cast<const char*>(name.data()), name.size()});
}

/// The entries of a folder, the last by name first: of several versions the newest.
std::vector<fs::path> entriesOf(const fs::path& folder) {
  std::vector<fs::path> entries = entriesIn(folder);
  if (entries.size() > kMostEntries) entries.resize(kMostEntries);
  std::ranges::sort(entries, std::ranges::greater(), lettersOf);
  return entries;
}

/// Takes up programs, each once.
class FoundPrograms {
 public:
  void add(const fs::path& program) {
    std::error_code none;
    if (program.empty() || !fs::is_regular_file(program, none)) return;
    if (std::ranges::find(found_, program) == found_.end()) found_.push_back(program);
  }
  /// A folder's own rigctld, also under the name that another program gave its copy.
  void addFrom(const fs::path& folder) {
    for (const fs::path& entry : entriesOf(folder)) {
      const std::string name = lettersOf(entry);
      if (name.starts_with("RIGCTLD") && (name.ends_with(".EXE") || name == "RIGCTLD")) add(entry);
    }
  }
  /// That of a program that was unpacked or installed into a folder.
  void addInstalled(const fs::path& folder) {
    addFrom(folder);
    addFrom(folder / "bin");
  }
  std::vector<fs::path> take() { return std::move(found_); }

 private:
  std::vector<fs::path> found_;
};

void addNamed(FoundPrograms& found, const fs::path& parent, std::string_view beginning) {
  for (const fs::path& folder : entriesOf(parent)) {
    if (!lettersOf(folder).starts_with(beginning)) continue;
    found.addInstalled(folder);
    // An archive that was unpacked into a folder of its own name; C:\WSJT\wsjtx.
    for (const fs::path& inner : entriesOf(folder)) {
      std::error_code none;
      if (lettersOf(inner) != "BIN" && fs::is_directory(inner, none)) found.addInstalled(inner);
    }
  }
}

}  // namespace

std::vector<fs::path> serverPrograms(const ProgramPlaces& places, const fs::path& shown) {
  FoundPrograms found;
  found.add(shown);
  found.addInstalled(places.own / "hamlib");
  found.addFrom(places.own);
  for (const fs::path& folder : places.folders) addNamed(found, folder, "HAMLIB");
  for (const fs::path& folder : places.search) {
    found.add(folder / "rigctld.exe");
    found.add(folder / "rigctld");
  }
  for (const std::string_view program : {"WSJT", "JTDX", "JS8CALL"}) {
    for (const fs::path& folder : places.folders) addNamed(found, folder, program);
  }
  return found.take();
}

ServerVersion readServerVersion(std::string_view text) {
  const auto name = text.find("Hamlib ");
  if (name == text.npos) return {};
  std::string_view version = text.substr(name + 7, 20);
  version = version.substr(0, version.find_first_not_of("0123456789."));
  if (version.empty()) return {};
  return {"Hamlib " + std::string(version), num(version) < 4};
}

std::string noServerProgramWords() {
  return "No rigctld was found on this computer. It is part of Hamlib, which is free: get the "
         "archive for 64-bit Windows from the Hamlib project. Unpack it to C:\\ (it makes a folder "
         "hamlib-w64-...), or show me where rigctld.exe is.";
}

}  // namespace kelvane::sondrel
