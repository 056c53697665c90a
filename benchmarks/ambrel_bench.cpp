#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <functional>
#include <limits>
#include <random>
#include <string>
#include <string_view>
#include <vector>

#include "base/safe_file.h"
#include "base/text.h"
#include "benchmarks/table.h"
#include "components/ambrel/ambrel_core.h"
#include "components/ambrel/schedule/eibi_schedule.h"
#include "components/ambrel/schedule/schedule_store.h"
#include "components/ambrel/stations/station_table.h"

// Looking up the nearest known frequency, against std::lower_bound on a plain array of the same
// frequencies; and taking in a schedule, against a bare split of the same file into lines. A
// schedule is made up in the form of the real ones; KELVANE_SCHEDULE names a file to use instead.

namespace {

using namespace kelvane;
using namespace kelvane::ambrel;
using Clock = std::chrono::steady_clock;

constexpr std::size_t kQueries = 1 << 16;

double quickest(int runs, const std::function<void()>& run) {
  double best = std::numeric_limits<double>::max();
  for (int i = 0; i < runs; ++i) {
    const auto start = Clock::now();
    run();
    best = std::min(best, std::chrono::duration<double>(Clock::now() - start).count());
  }
  return best;
}

/// Lines like those of a real schedule, nearly five for each frequency, in order of frequency.
std::string madeUpSchedule(std::size_t lines) {
  constexpr const char* kDays[] = {"", "", "", "", "", "", "Mo-Fr", "SaSu", "1245", "1.Sa"};
  constexpr const char* kCodes[] = {"1", "1", "1", "0", "2", "5"};
  constexpr const char* kStops[] = {";", ";[0122]", ";[0322]", "0106;3108", "0111;2802[0219]"};
  std::mt19937 random(1);
  const auto pick = [&random](auto& from) { return from[random() % std::size(from)]; };
  std::string text =
      "kHz:75;Time(UTC):93;Days:59;ITU:49;Station:201;Lng:49;Target:62;Remarks:135;"
      "P:35;Start:60;Stop:60;\r\n";
  const double step = 29'000'000.0 / static_cast<double>(lines);
  for (std::size_t line = 0; line < lines; ++line) {
    const auto hertz = static_cast<long>(150'000 + step * static_cast<double>(line / 5 * 5));
    char row[200];
    std::snprintf(row, sizeof row, "%.3f;%02u00-%02u%s;%s;CHN;Radio Station %u;M;FE;x;%s;%s\r\n",
                  static_cast<double>(hertz) / 1000, static_cast<unsigned>(random() % 24),
                  static_cast<unsigned>(random() % 24), random() % 3 ? "00" : "30", pick(kDays),
                  static_cast<unsigned>(random() % 1000), pick(kCodes), pick(kStops));
    text += row;
  }
  return text;
}

/// A folder for the component's files, gone at the end.
struct Folder {
  Folder() : path(std::filesystem::temp_directory_path() / "kelvane-bench") {
    std::filesystem::remove_all(path);
    std::filesystem::create_directories(path);
  }
  ~Folder() { std::filesystem::remove_all(path); }
  std::filesystem::path path;
};

struct NoWindows : ComponentWindows {
  void setOwner(Long) override {}
  void showKnownList(AmbrelCore&) override {}
  void showSource(AmbrelCore&) override {}
  void showData(AmbrelCore&) override {}
};

std::vector<Hz> queriesFor(const StationTable& table) {
  std::mt19937 random(2);
  std::vector<Hz> queries;
  for (std::size_t i = 0; i < kQueries; ++i) {
    // Half of them near a known frequency, as an operator tunes, half anywhere.
    if (i % 2)
      queries.push_back(table.frequency(random() % table.size()) + random() % 200);
    else
      queries.push_back(static_cast<Hz>(150'000 + random() % 29'000'000));
  }
  return queries;
}

void measureLookUp(const std::filesystem::path& folder, std::size_t records) {
  const auto file = folder / "sked-a26.csv";
  std::ofstream(file, std::ios::binary) << madeUpSchedule(records);
  NoWindows windows;
  AmbrelCore core(
      KELVANE_DATA_FOLDER, folder, std::chrono::system_clock::now, [] {}, windows);
  core.OpenFrqConfig("Bench");
  core.InitFrqPlan(0);
  core.importSchedule(file);
  while (core.isLoading()) core.deliverEvents();

  const StationTable& table = *core.data().table;
  std::vector<Hz> plain;
  for (std::size_t place = 0; place < table.size(); ++place)
    plain.insert(plain.end(), table.at(place).size(), table.frequency(place));
  const std::vector<Hz> queries = queriesFor(table);
  FrequencyComponent& component = core;
  std::size_t found = 0, sum = 0;
  const double look = quickest(20, [&] {
    for (const Hz query : queries) found += component.FindRxKnownFrequency(query, 250).value();
  });
  const double bare = quickest(20, [&] {
    for (const Hz query : queries)
      sum += static_cast<std::size_t>(std::lower_bound(plain.begin(), plain.end(), query) -
                                      plain.begin());
  });
  bench::must(found > 0 && sum > 0, "stations are found");
  const double each = 1e9 / static_cast<double>(kQueries);
  bench::print({"nearest known of " + std::to_string(table.records().size()), look * each, "ns",
                "std::lower_bound", bare * each, 2});
}

void measureImport(const std::filesystem::path& file, const char* name) {
  constexpr std::size_t kLimit = kLargestSchedule;
  const double megabytes = static_cast<double>(std::filesystem::file_size(file)) / 1e6;
  std::size_t lines = 0, stations = 0;
  double bare = std::numeric_limits<double>::max(), import = bare;
  // By turns, as the machine is not equally quick all the time.
  for (int turn = 0; turn < 300; ++turn) {
    bare = std::min(bare, quickest(1, [&] {
                      const auto text = readFile(file, kLimit);
                      lines += split(*text, '\n').size();
                    }));
    import = std::min(import, quickest(1, [&] {
                        std::vector<StationList> lists;
    FileSteps disk;
    lists.push_back(readScheduleFile(file, disk));
    stations += StationTable(std::move(lists)).size();
  }));
}
bench::must(lines > 0 && stations > 0, "the schedule has stations");
bench::print({name, import * 1e3 / megabytes, "ms/MB", "reading and splitting lines",
              bare * 1e3 / megabytes, 5});
}  // namespace

/// The whole of an import as the operator waits for it: read, kept on the disk, in use.
void measureWholeImport(const std::filesystem::path& folder, const std::filesystem::path& file) {
  NoWindows windows;
  AmbrelCore core(
      folder, folder, std::chrono::system_clock::now, [] {}, windows);
  core.OpenFrqConfig("Bench");
  const double whole = quickest(10, [&] {
    core.importSchedule(file);
    while (core.isLoading()) core.deliverEvents();
  });
  bench::print({"import, kept and in use", whole * 1e3, "ms", "a goal", 50, 1});
}

}  // namespace

int main() {
  return bench::measure([] {
    const Folder folder;
    measureLookUp(folder.path, 13'000);
    measureLookUp(folder.path, 1'000'000);
    const auto made = folder.path / "made-a26.csv";
    std::ofstream(made, std::ios::binary) << madeUpSchedule(13'000);
    measureImport(made, "import of 13000 made-up lines");
    measureWholeImport(folder.path, made);
    if (const char* real = std::getenv("KELVANE_SCHEDULE")) {
      measureImport(real, "import of the given schedule");
      measureWholeImport(folder.path, real);
    }
  });
}
