#include <algorithm>
#include <chrono>
#include <cstdio>
#include <functional>
#include <numeric>
#include <random>
#include <string>
#include <utility>
#include <vector>

#include "base/number.h"
#include "bench/measured_stack.h"
#include "shell/grid_sort.h"

// The sort of a grid of a million rows, with the making of its keys, against std::sort on keys that
// are ready. Prints name, value, what it is compared with, and the ratio, one figure a line.

namespace {

using kelvane::GridOrder;
using kelvane::GridRow;
using Cells = std::vector<std::string>;

constexpr std::size_t kRows = 1'000'000;
constexpr int kRuns = 5;

/// The quickest of some runs, in milliseconds; what a run needs is made before its time starts.
template <class Input>
double quickest(const std::function<Input()>& make, const std::function<void(Input&)>& run) {
  double best = 1e9;
  for (int i = 0; i < kRuns; ++i) {
    Input input = make();
    const auto start = std::chrono::steady_clock::now();
    run(input);
    const std::chrono::duration<double, std::milli> took = std::chrono::steady_clock::now() - start;
    best = std::min(best, took.count());
  }
  return best;
}

std::vector<GridRow> rowNumbers() {
  std::vector<GridRow> rows(kRows);
  std::iota(rows.begin(), rows.end(), 0u);
  return rows;
}

double gridSort(const Cells& cells, GridOrder::By by) {
  return quickest<std::vector<GridRow>>(rowNumbers, [&](std::vector<GridRow>& order) {
    kelvane::sortGrid(order, {0, by, {}},
                      [&](GridRow row, int) -> const std::string& { return cells[row]; });
  });
}

template <class Key>
double readyKeys(const std::function<Key(GridRow)>& keyOf) {
  using Keys = std::vector<std::pair<Key, GridRow>>;
  const auto make = [&] {
    Keys keys;
    for (GridRow row = 0; row < kRows; ++row) keys.emplace_back(keyOf(row), row);
    return keys;
  };
  return quickest<Keys>(make, [](Keys& keys) { std::sort(keys.begin(), keys.end()); });
}

void print(const char* name, double value, const char* against, double baseline) {
  std::printf("%-34s %8.1f ms  %-28s %8.1f ms  %5.2f\n", name, value, against, baseline,
              value / baseline);
}

void byNumber(const char* name, const Cells& cells) {
  const double baseline = readyKeys<double>([&](GridRow row) { return kelvane::num(cells[row]); });
  print(name, gridSort(cells, GridOrder::By::Number), "std::sort on ready numbers", baseline);
}

void byText(const char* name, const Cells& cells) {
  Cells joined;
  for (std::size_t row = 0; row < kRows; ++row) joined.push_back(cells[row] + std::to_string(row));
  const double baseline =
      readyKeys<std::string_view>([&](GridRow row) { return std::string_view(joined[row]); });
  print(name, gridSort(cells, GridOrder::By::Text), "std::sort on ready texts", baseline);
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
  const std::size_t bytes = kelvane::MeasuredStack().run([&] {
    kelvane::sortGrid(order, {0, by, {}},
                      [&](GridRow row, int) -> const std::string& { return cells[row]; });
  });
  std::printf("%-34s %8zu bytes of stack\n", name, bytes);
}

}  // namespace

int main() {
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
}
