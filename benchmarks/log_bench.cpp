#include <fcntl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <ctime>
#include <filesystem>
#include <fstream>
#include <functional>
#include <memory>
#include <random>
#include <string>
#include <utility>
#include <vector>

#include "base/number.h"
#include "base/safe_file.h"
#include "benchmarks/latencies.h"
#include "benchmarks/table.h"
#include "station_log/log_export.h"
#include "station_log/log_file.h"
#include "station_log/log_line.h"

// A station log of a million records: reading it, sorting it by each column, saving it, and the
// memory that it takes; its exports; and a single record that is stored by key.

namespace {

namespace fs = std::filesystem;
using kelvane::GridRow;
using kelvane::LogFile;
using kelvane::LogTable;

constexpr int kRecords = 1'000'000;
constexpr int kRuns = 3;
constexpr std::size_t kLimit = 1'000'000'000;

/// What listeners write: few modes, some thousand frequencies, twenty years in no order.
std::string manyRecords() {
  std::mt19937 random(1);
  const auto up = [&](int most) { return static_cast<int>(random() % most); };
  const auto two = [&](int most) { return std::to_string(100 + up(most)).substr(1); };
  const char* const modes[] = {"AM", "USB", "LSB", "CW", "FM", "DRM"};
  std::string file;
  for (int i = 0; i < kRecords; ++i) {
    std::string comment(static_cast<std::size_t>(up(30)), ' ');
    for (char& c : comment) c = static_cast<char>('a' + up(26));
    kelvane::appendLogLine(
        file, kelvane::joinLogLine({std::to_string(150'000 + 5000 * up(5900)), modes[up(6)],
                                    std::to_string(500 * (1 + up(12))), up(2) ? "FAST" : "SLOW",
                                    std::to_string(2006 + up(20)) + "-" + two(12) + "-" + two(28),
                                    two(24) + ":" + two(60) + ":" + two(60), "Unknown", comment,
                                    "Harrow"}));
  }
  return file;
}

double wall(const std::function<void()>& work) {
  const auto start = std::chrono::steady_clock::now();
  work();
  return std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - start)
      .count();
}

double processor(const std::function<void()>& work) {
  const std::clock_t start = std::clock();
  work();
  return 1000.0 * static_cast<double>(std::clock() - start) / CLOCKS_PER_SEC;
}

/// The quickest of some runs of both; they take turns, so that both meet the same machine.
void compare(const std::string& name, const std::function<double()>& ours, const char* against,
             const std::function<double()>& bare, double goal) {
  double best = 1e9, baseline = 1e9;
  for (int run = 0; run < kRuns; ++run) {
    baseline = std::min(baseline, bare());
    best = std::min(best, ours());
  }
  kelvane::bench::print({name, best, "ms", against, baseline, goal});
}

void load(const fs::path& path) {
  compare(
      "load a million records",
      [&] {
        return wall([&] {
          LogFile file(path);
          kelvane::bench::must(file.read().size() == kRecords, "every record is read");
        });
      },
      "bare read", [&] { return wall([&] { kelvane::readFile(path, kLimit); }); }, 5);
}

void save(const fs::path& path, const std::string& content) {
  LogFile file(path);
  const LogTable log = file.read();
  const fs::path copy = path.string() + ".copy";
  int number = 0;
  compare(
      "save a million records",
      [&] {
        LogFile target(path.string() + std::to_string(++number));
        target.read();
        return wall([&] { kelvane::bench::must(bool(target.save(log, {})), "the log is saved"); });
      },
      "bare write to the disk",
      [&] {
        return wall([&] {
          kelvane::FileSteps disk;
          disk.write(copy, content);
          disk.flush(copy);
        });
      },
      3);
}

template <class Key>
void compareSort(const LogTable& log, int field, std::vector<std::pair<Key, GridRow>>& ready) {
  const std::string caption(kelvane::kLogCaptions[static_cast<std::size_t>(field)]);
  compare(
      "sort a million records by " + caption,
      [&] {
        std::vector<GridRow> order;
        const double time = processor([&] { order = log.sorted(field); });
        kelvane::bench::must(order.size() == log.size(), "every row is sorted");
        return time;
      },
      "std::sort on the same keys",
      [&] {
        auto keys = ready;
        return processor([&] { std::sort(keys.begin(), keys.end()); });
      },
      1.5);
}

void sort(const LogTable& log, int field) {
  if (field == kelvane::LogFrequency || field == kelvane::LogFilter) {
    std::vector<std::pair<double, GridRow>> ready;
    for (GridRow row = 0; row < log.size(); ++row)
      ready.emplace_back(kelvane::num(log.field(row, field)), row);
    return compareSort(log, field, ready);
  }
  std::vector<std::pair<std::string, GridRow>> ready;
  for (GridRow row = 0; row < log.size(); ++row) {
    std::string key(log.field(row, field));
    if (field == kelvane::LogDate) key += log.field(row, kelvane::LogTime);
    ready.emplace_back(key + std::to_string(row), row);
  }
  compareSort(log, field, ready);
}

/// A line of the process's own account, in bytes.
double account(const std::string& name) {
  std::ifstream status("/proc/self/status");
  for (std::string line; std::getline(status, line);)
    if (line.starts_with(name + ":")) return 1024 * kelvane::num(line.substr(name.size() + 1));
  return 0;
}

/// The memory that some work comes to need, in a process that has done nothing else.
double memoryOf(const std::function<void()>& work) {
  int ends[2];
  kelvane::bench::must(pipe(ends) == 0, "a pipe");
  const pid_t child = fork();
  if (child == 0) {
    std::ofstream("/proc/self/clear_refs") << "5";
    const double before = account("VmRSS");
    work();
    const double needed = account("VmHWM") - before;
    _exit(write(ends[1], &needed, sizeof needed) == sizeof needed ? 0 : 1);
  }
  double needed = 0;
  kelvane::bench::must(read(ends[0], &needed, sizeof needed) == sizeof needed,
                       "the child's answer");
  waitpid(child, nullptr, 0);
  return needed;
}

void memory(const char* name, const fs::path& path, const std::function<void(LogFile&)>& work) {
  const double needed = memoryOf([&] {
    LogFile file(path);
    work(file);
  });
  const auto size = static_cast<double>(fs::file_size(path));
  kelvane::bench::print({name, needed / 1e6, "MB", "the file", size / 1e6, 3});
}

/// A zone an hour from UTC, which changes no day.
struct BenchCalendar : kelvane::Calendar {
  kelvane::DateTime now() const override { return {}; }
  kelvane::DateTime utc(const kelvane::DateTime& local) const override {
    kelvane::DateTime result = local;
    return --result.hour < 0 ? local : result;
  }
};

template <class Export>
void exportRow(const std::string& name, const fs::path& folder, const LogTable& log,
               Export exported) {
  const std::string content = exported(log, BenchCalendar()).content;
  const auto bare = [&] {
    return wall([&] {
      kelvane::FileSteps disk;
      disk.write(folder / "bare", content);
      disk.flush(folder / "bare");
    });
  };
  // The making waits for nothing but other programs.
  const auto ours = [&] {
    kelvane::LogExport file;
    const double made = processor([&] { file = exported(log, BenchCalendar()); });
    return made + wall([&] {
             kelvane::bench::must(kelvane::writeFileSafely(folder / "export", file.content).ok(),
                                  "the export");
           });
  };
  compare("export 100,000 records as " + name, ours, "bare write to the disk", bare, 5);
}

void exports(const fs::path& folder, std::string content) {
  constexpr int kExported = 100'000;
  std::size_t end = 0;
  for (int i = 0; i < kExported; ++i) end = content.find('\n', end) + 1;
  content.resize(end);
  kelvane::LogRejects none;
  const LogTable log(std::move(content), none);
  exportRow("ADIF", folder, log, [](const LogTable& table, const kelvane::Calendar& calendar) {
    return kelvane::adifOf(table, calendar);
  });
  exportRow("CSV", folder, log, kelvane::csvOf);
}

/// One record each time, as by key, and as many bytes bare into an open file; by turns.
void storing(const fs::path& folder) {
  constexpr int kStored = 2000;
  const std::string line = kelvane::joinLogLine(
      {"7050000", "USB", "2400", "FAST", "2026-03-15", "18:05:09", "Unknown", "", "Harrow"});
  LogFile log(folder / "stored.txt");
  const fs::path bareFile = folder / "bare-flush";
  const int bare = ::open(bareFile.c_str(), O_CREAT | O_WRONLY | O_APPEND, 0600);
  kelvane::bench::Latencies stored, flushed;
  const kelvane::LogChange change{kelvane::LogChange::Added, line};
  for (int i = 0; i < kStored; ++i) {
    stored.add(wall(
        [&] { kelvane::bench::must(log.keep(std::span(&change, 1)).ok(), "the record is kept"); }));
    flushed.add(wall([&] {
      kelvane::bench::must(::write(bare, line.data(), line.size()) > 0 && ::fsync(bare) == 0,
                           "the bare flush");
    }));
  }
  ::close(bare);
  kelvane::bench::print({"stored record to the disk, median", stored.median(), "ms",
                         "bare write and flush", flushed.median()});
  kelvane::bench::print({"stored record to the disk, 99.9th percentile", stored.part(0.999), "ms",
                         "bare write and flush", flushed.part(0.999)});
}

}  // namespace

int main() {
  return kelvane::bench::measure([] {
    const fs::path folder =
        fs::temp_directory_path() / ("kelvane-log-bench-" + std::to_string(getpid()));
    const std::shared_ptr<void> cleaned(nullptr, [&](void*) { fs::remove_all(folder); });
    const fs::path path = folder / "scratchpad.txt";
    {
      const std::string content = manyRecords();
      kelvane::bench::must(kelvane::writeFileSafely(path, content).ok(), "a log to measure with");
    }
    memory("memory to load a million records", path, [](LogFile& file) { file.read(); });
    memory("memory to load, sort and save them", path, [](LogFile& file) {
      LogTable log = file.read();
      log.setOrder(log.sorted(kelvane::LogFrequency));
      file.save(log, {});
    });
    storing(folder);
    exports(folder, *kelvane::readFile(path, kLimit));
    load(path);
    save(path, *kelvane::readFile(path, kLimit));
    LogFile file(path);
    const LogTable log = file.read();
    for (int field = 0; field < kelvane::kLogFields; ++field) sort(log, field);
  });
}
