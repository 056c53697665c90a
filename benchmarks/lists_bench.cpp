#include <algorithm>
#include <chrono>
#include <ctime>
#include <filesystem>
#include <fstream>
#include <functional>
#include <memory>
#include <nlohmann/json.hpp>
#include <random>
#include <rapidxml/rapidxml.hpp>
#include <string>
#include <vector>

#include "base/safe_file.h"
#include "base/text.h"
#include "benchmarks/table.h"
#include "components/ambrel/ambrel_core.h"
#include "components/ambrel/formats/import_plan.h"
#include "components/ambrel/lists/own_file.h"
#include "contract/modes.h"

// The lists of other programs: 100,000 stations taken in, against a bare read whose lines are split
// or the library's bare parse of the same text, and written to the disk, against a bare write to
// it. And the name of a frequency with a million stations of the operator's own.

namespace {

using namespace kelvane;
using namespace kelvane::formats;
namespace fs = std::filesystem;

constexpr std::size_t kStations = 100'000;

/// The quickest of some runs, of the processor's time: it waits for nothing but other programs.
double milliseconds(const std::function<void()>& work) {
  double best = 1e9;
  for (int run = 0; run < 5; ++run) {
    const std::clock_t start = std::clock();
    work();
    best = std::min(best, 1000.0 * static_cast<double>(std::clock() - start) / CLOCKS_PER_SEC);
  }
  return best;
}

/// The time that passes.
double waited(const std::function<void()>& work) {
  const auto start = std::chrono::steady_clock::now();
  work();
  return std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - start)
      .count();
}

lists::Entries madeUpStations(std::size_t count) {
  constexpr const char* kGroups[] = {"Broadcast", "Utility", "Ham", "", "Time"};
  std::mt19937 random(1);
  lists::Entries entries;
  for (std::size_t i = 0; i < count; ++i) {
    Entry entry;
    entry.frequency = static_cast<Hz>(150'000 + i * 29'000'000 / count);
    entry.name = "Station " + std::to_string(i);
    entry.mode = static_cast<Setting>(random() % 5);
    entry.width = random() % 2 ? 6000 : 2400;
    entry.group = kGroups[random() % std::size(kGroups)];
    if (random() % 4 == 0) {
      entry.from = 360;
      entry.to = 500;
    }
    entries.push_back(std::make_shared<const Entry>(std::move(entry)));
  }
  return entries;
}

std::string fileText(const fs::path& path) {
  FileSteps disk;
  return disk.read(path, kLargestList).content;
}

std::size_t readAndSplit(const fs::path& path, char delimiter) {
  std::ifstream in(path, std::ios::binary);
  std::string line;
  std::size_t fields = 0;
  while (std::getline(in, line)) fields += split(line, delimiter).size();
  return fields;
}

/// What the same text costs without us.
struct Bare {
  const char* name;
  double goal;
  std::function<void(const fs::path&)> read;
};

Bare bareOf(Format format) {
  const auto splitAt = [](char delimiter) {
    return Bare{"bare read and split", 10, [delimiter](const fs::path& path) {
                  bench::must(readAndSplit(path, delimiter) >= kStations, "every line is split");
                }};
  };
  switch (format) {
    case Format::SdrPlusPlus:
    case Format::SdrPlusPlusSettings:
    case Format::KiwiJson:
    case Format::OpenWebRx:
      return {"nlohmann::json::parse", 2, [](const fs::path& path) {
                bench::must(!nlohmann::json::parse(fileText(path)).empty(), "the parse");
              }};
    case Format::SdrSharp:
      return {"rapidxml parse", 2, [](const fs::path& path) {
                std::string text = fileText(path);
                rapidxml::xml_document<> document;
                document.parse<0>(text.data());
                bench::must(document.first_node() != nullptr, "the parse");
              }};
    case Format::Own:
    case Format::Gqrx:
    case Format::KiwiCsv:
      return splitAt(';');
    default:
      return splitAt(',');
  }
}

void measureFormat(const lists::Entries& entries, Format format, const fs::path& folder) {
  const std::string name(nameOf(format).name);
  const fs::path file = folder / "list", bareFile = folder / "bare";
  FileSteps disk;
  std::string text;
  // Several threads make it, and then it is the disk that is waited for.
  double made = 1e9, written = 1e9, bareWrite = 1e9;
  for (int run = 0; run < 5; ++run) {
    made = std::min(made, waited([&] { text = writeList(entries, format).text; }));
    written = std::min(
        written, waited([&] { bench::must(bool(writeFileSafely(file, text)), "the export"); }));
    bareWrite = std::min(bareWrite, waited([&] {
                           disk.write(bareFile, text);
                           disk.flush(bareFile);
                         }));
  }
  bench::print(
      {name + ", export of 100,000", made + written, "ms", "bare write to the disk", bareWrite, 3});
  const Bare bare = bareOf(format);
  const double read = milliseconds([&] {
    bench::must(readList(fileText(file)).taken.size() == kStations, "every station of " + name);
  });
  const double bareRead = milliseconds([&] { bare.read(file); });
  bench::print({name + ", import of 100,000", read, "ms", bare.name, bareRead, bare.goal});
}

struct NoWindows : ambrel::ComponentWindows {
  void setOwner(Long) override {}
  void showKnownList(ambrel::AmbrelCore&) override {}
  void showSource(ambrel::AmbrelCore&) override {}
  void showData(ambrel::AmbrelCore&) override {}
};

void measureLookUp(const lists::Entries& entries, const fs::path& folder) {
  lists::OwnText own;
  own.entries = entries;
  NoWindows windows;
  ambrel::AmbrelCore core(
      KELVANE_DATA_FOLDER, folder, std::chrono::system_clock::now, [] {}, windows);
  core.OpenFrqConfig("Bench");
  core.InitFrqPlan(0);
  FileSteps disk;
  const fs::path file = folder / "Bench" / lists::kOwnListName;
  disk.makeFolders(file.parent_path());
  disk.write(file, lists::ownText(own));
  core.ReadFrqOwn();
  while (core.isLoading()) core.deliverEvents();
  std::vector<Hz> plain, queries;
  for (const auto& entry : entries) plain.push_back(entry->frequency);
  std::mt19937 random(2);
  for (int i = 0; i < 1 << 16; ++i)
    queries.push_back(plain[random() % plain.size()] + static_cast<Hz>(random() % 20));
  FrequencyComponent& component = core;
  std::size_t found = 0, sum = 0;
  const double look = milliseconds([&] {
    for (const Hz query : queries) found += component.FindRxKnownFrequency(query, 250).value();
  });
  const double bare = milliseconds([&] {
    for (const Hz query : queries)
      sum += static_cast<std::size_t>(std::ranges::lower_bound(plain, query) - plain.begin());
  });
  bench::must(found == queries.size() * 5 && sum > 0, "stations of the list are found");
  const double each = 1e6 / static_cast<double>(queries.size());
  bench::print({"name of the frequency, a million stations of one's own", look * each, "ns",
                "std::lower_bound", bare * each, 2});
}

}  // namespace

int main() {
  return bench::measure([] {
    const fs::path folder = fs::temp_directory_path() / "kelvane-lists-bench";
    fs::remove_all(folder);
    fs::create_directories(folder);
    const lists::Entries entries = madeUpStations(kStations);
    for (int format = 0; format < static_cast<int>(Format::Count); ++format)
      measureFormat(entries, static_cast<Format>(format), folder);
    measureLookUp(madeUpStations(1'000'000), folder);
    fs::remove_all(folder);
  });
}
