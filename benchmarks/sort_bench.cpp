#include <algorithm>
#include <ctime>
#include <functional>
#include <numeric>
#include <random>
#include <string>
#include <utility>
#include <vector>

#include "base/number.h"
#include "benchmarks/measured_stack.h"
#include "benchmarks/table.h"
#include "grid/grid_sort.h"

// The sort of a grid of a million rows, with the making of its keys, against std::sort on keys that
// are ready.

namespace {

using kelvane::GridOrder;
using kelvane::GridRow;
using Cells = std::vector<std::string>;

constexpr std::size_t kRows = 1'000'000;
constexpr int kRuns = 5;

/// The processor's time and not the wall's: a sort waits for nothing but for other programs.
double milliseconds(const std::function<void()>& work) {
  const std::clock_t start = std::clock();
  work();
  return 1000.0 * static_cast<double>(std::clock() - start) / CLOCKS_PER_SEC;
}

std::vector<GridRow> rowNumbers() {
  std::vector<GridRow> rows(kRows);
  std::iota(rows.begin(), rows.end(), 0u);
  return rows;
}

void sortRows(std::vector<GridRow>& order, const Cells& cells, GridOrder::By by) {
  kelvane::sortGrid(order, {0, by, {}},
                    [&](GridRow row, int) -> const std::string& { return cells[row]; });
}

/// The quickest of some runs of both; they take turns, so that both meet the same machine.
template <class Key>
void compare(const char* name, const Cells& cells, GridOrder::By by, const char* against,
             const std::function<Key(GridRow)>& keyOf) {
  std::vector<std::pair<Key, GridRow>> ready;
  for (GridRow row = 0; row < kRows; ++row) ready.emplace_back(keyOf(row), row);
  double ours = 1e9, baseline = 1e9;
  for (int run = 0; run < kRuns; ++run) {
    std::vector<GridRow> order = rowNumbers();
    ours = std::min(ours, milliseconds([&] { sortRows(order, cells, by); }));
    auto keys = ready;
    baseline = std::min(baseline, milliseconds([&] { std::sort(keys.begin(), keys.end()); }));
    const auto sameRow = [](GridRow row, const auto& key) { return row == key.second; };
    kelvane::bench::must(std::equal(order.begin(), order.end(), keys.begin(), sameRow),
                         "both sorts come to the same order");
  }
  kelvane::bench::print({name, ours, "ms", against, baseline, 2});
}

void byNumber(const char* name, const Cells& cells) {
  compare<double>(name, cells, GridOrder::By::Number, "std::sort on ready numbers",
                  [&](GridRow row) { return kelvane::num(cells[row]); });
}

void byText(const char* name, const Cells& cells) {
  Cells joined;
  for (std::size_t row = 0; row < kRows; ++row) joined.push_back(cells[row] + std::to_string(row));
  compare<std::string_view>(name, cells, GridOrder::By::Text, "std::sort on ready texts",
                            [&](GridRow row) { return std::string_view(joined[row]); });
}

Cells randomFrequencies() {
  std::mt19937 random(1);
  std::uniform_int_distribution<int> hertz(9000, 30'000'000);
  Cells cells(kRows);
  for (std::string& cell : cells) cell = std::to_string(hertz(random));
  return cells;
}

Cells randomComments() {
  std::mt19937 random(2);
  std::uniform_int_distribution<int> letter('a', 'z'), length(4, 30);
  Cells cells(kRows);
  for (std::string& cell : cells) {
    cell.resize(static_cast<std::size_t>(length(random)));
    for (char& c : cell) c = static_cast<char>(letter(random));
  }
  return cells;
}

void stackDepth(const char* name, const Cells& cells, GridOrder::By by) {
  std::vector<GridRow> order = rowNumbers();
  const auto bytes =
      static_cast<double>(kelvane::MeasuredStack().run([&] { sortRows(order, cells, by); }));
  kelvane::bench::print({std::string("stack depth of ") + name, bytes / 1024, "KiB"});
}

}  // namespace

int main() {
  return kelvane::bench::measure([] {
    const Cells frequencies = randomFrequencies();
    const Cells comments = randomComments();
    const Cells equal(kRows, "Strong signal, some fading");
    byNumber("sort by number, random", frequencies);
    byNumber("sort by number, all equal", Cells(kRows, "14250000"));
    byText("sort by text, random", comments);
    byText("sort by text, all equal", equal);
    stackDepth("sort by number, random", frequencies, GridOrder::By::Number);
    stackDepth("sort by text, random", comments, GridOrder::By::Text);
    stackDepth("sort by text, all equal", equal, GridOrder::By::Text);
  });
}
