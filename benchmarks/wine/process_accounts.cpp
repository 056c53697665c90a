#include "benchmarks/wine/process_accounts.h"

#include <windows.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <sstream>

#include "benchmarks/table.h"

namespace kelvane::bench {

namespace {

constexpr double kTicksASecond = 100;  // of the accounting that every Linux program sees

std::string readWhole(const std::filesystem::path& file) {
  std::ifstream in(file, std::ios::binary);
  return {std::istreambuf_iterator<char>(in), {}};
}

/// The number after a name at a line's start, in kB there; here in MB.
double megabytes(const std::string& text, const std::string& name) {
  const auto at = text.find("\n" + name + ":");
  must(at != std::string::npos, "reading " + name + " of a process");
  return std::atof(text.c_str() + at + name.size() + 2) / 1024;
}

}  // namespace

ProcessAccounts ProcessAccounts::ofCommand(const std::string& program, const std::string& word) {
  int found = 0, matches = 0;
  for (const auto& entry : std::filesystem::directory_iterator(L"Z:\\proc")) {
    const int id = std::atoi(entry.path().filename().string().c_str());
    if (id == 0) continue;
    const std::string command = readWhole(entry.path() / "cmdline");
    // The words of a command line end in a null each.
    if (command.find(program + '\0' + word + '\0') == std::string::npos) continue;
    found = id;
    ++matches;
  }
  must(matches == 1, "finding one process of " + program + " " + word + " (" +
                         std::to_string(matches) + " found)");
  return ProcessAccounts(found);
}

ProcessAccounts ProcessAccounts::ofVariable(const wchar_t* variable) {
  wchar_t id[16] = L"";
  GetEnvironmentVariableW(variable, id, 16);
  must(_wtoi(id) > 0, "being told which process serves the windows");
  return ProcessAccounts(_wtoi(id));
}

std::string ProcessAccounts::read(const char* file) const {
  const auto folder = std::filesystem::path(L"Z:\\proc") / std::to_string(hostId_);
  const std::string text = readWhole(folder / file);
  must(!text.empty(), "reading the accounts of process " + std::to_string(hostId_));
  return text;
}

double ProcessAccounts::seconds() const {
  const std::string text = read("stat");
  // The program's name before that, in brackets, may hold anything.
  std::istringstream fields(text.substr(text.rfind(')') + 1));
  std::string skipped;
  for (int i = 0; i < 11; ++i) fields >> skipped;
  double user = 0, system = 0;
  fields >> user >> system;
  return (user + system) / kTicksASecond;
}

ProcessAccounts::Memory ProcessAccounts::memory() const {
  const std::string text = read("smaps_rollup");
  return {megabytes(text, "Rss"),
          megabytes(text, "Private_Clean") + megabytes(text, "Private_Dirty"),
          megabytes(text, "Anonymous")};
}

}  // namespace kelvane::bench
