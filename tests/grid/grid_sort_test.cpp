#include "grid/grid_sort.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <numeric>
#include <random>

#include "benchmarks/measured_stack.h"

namespace kelvane {
namespace {

using By = GridOrder::By;
using Rows = std::vector<GridRow>;
using Table = std::vector<std::vector<std::string>>;

Rows sorted(const Table& table, const GridOrder& by) {
  Rows order(table.size());
  std::iota(order.begin(), order.end(), 0u);
  sortGrid(order, by, [&](GridRow row, int column) { return table[row][column]; });
  return order;
}

TEST(GridSort, ComparesNumbersAsNumbers) {
  const Table table{{"14250000"}, {" 700"}, {""}, {"9.5"}, {"-3"}, {"x"}, {"700Hz"}};
  EXPECT_EQ(sorted(table, {0, By::Number, {}}), (Rows{4, 2, 5, 3, 1, 6, 0}));
  const Table signs{{"0"}, {"-0"}, {"-0.5"}, {"0.25"}, {"-20000000"}, {"0.0"}, {"-2"}};
  EXPECT_EQ(sorted(signs, {0, By::Number, {}}), (Rows{4, 6, 2, 0, 1, 5, 3}));
}

TEST(GridSort, ComparesTextJoinedWithTheRowsNumber) {
  const Table equal(12, {"USB"});
  EXPECT_EQ(sorted(equal, {}), (Rows{0, 1, 10, 11, 2, 3, 4, 5, 6, 7, 8, 9}));
  // "A12" stands before "A2": the number belongs to the text.
  EXPECT_EQ(sorted({{"b"}, {"B"}, {"A"}, {"A1"}, {""}, {"\u00C4"}, {"a\u00C4"}}, {}),
            (Rows{4, 3, 2, 1, 6, 0, 5}));
  const std::string nul("A\0", 2);
  EXPECT_EQ(sorted({{"A0"}, {nul}, {"A"}}, {}), (Rows{1, 0, 2}));
  EXPECT_EQ(sorted({{"wide band noise, b"}, {"wide band noise, a"}}, {}), (Rows{1, 0}));
}

TEST(GridSort, JoinsASecondColumnWhenAskedTo) {
  const Table table{{"2024-05-01", "19:00"}, {"2024-05-01", "07:30"}, {"2023-12-31", "23:59"}};
  EXPECT_EQ(sorted(table, {0, By::Text, {1}}), (Rows{2, 1, 0}));
  EXPECT_EQ(sorted(table, {0, By::Text, {}}), (Rows{2, 0, 1}));
}

TEST(GridSort, SortsTheGivenPartOfTheListWhateverItsOrderWas) {
  const Table table{{"5"}, {"4"}, {"3"}, {"2"}, {"1"}};
  Rows order{4, 0, 3, 1, 2};
  const auto cell = [&](GridRow row, int column) { return table[row][column]; };
  sortGrid(std::span(order).subspan(1, 3), {0, By::Number, {}}, cell);
  EXPECT_EQ(order, (Rows{4, 3, 1, 0, 2}));
  sortGrid(std::span(order).subspan(2, 1), {}, cell);
  sortGrid(std::span<GridRow>(), {}, cell);
  EXPECT_EQ(order, (Rows{4, 3, 1, 0, 2}));
}

/// What the keys' own order makes of all rows.
template <class Key, class KeyOf>
Rows plainlySorted(GridRow rows, KeyOf keyOf) {
  std::vector<std::pair<Key, GridRow>> keys;
  for (GridRow row = 0; row < rows; ++row) keys.emplace_back(keyOf(row), row);
  std::sort(keys.begin(), keys.end());
  Rows order;
  for (const auto& key : keys) order.push_back(key.second);
  return order;
}

TEST(GridSort, AgreesWithAPlainSortOfTheSameKeysWhateverOrderItStartsFrom) {
  std::mt19937 random(3);
  constexpr GridRow kRows = 2000;
  Table table;
  for (GridRow row = 0; row < kRows; ++row)
    table.push_back(
        {std::string(random() % 12, "ab"[random() % 2]), std::to_string(random() % 50)});
  const auto cell = [&](GridRow row, int column) { return table[row][column]; };
  Rows order(kRows);
  std::iota(order.begin(), order.end(), 0u);
  std::shuffle(order.begin(), order.end(), random);
  Rows byNumber = order;
  sortGrid(order, {0, By::Text, {}}, cell);
  EXPECT_EQ(order, plainlySorted<std::string>(
                       kRows, [&](GridRow row) { return table[row][0] + std::to_string(row); }));
  sortGrid(byNumber, {1, By::Number, {}}, cell);
  EXPECT_EQ(byNumber,
            plainlySorted<int>(kRows, [&](GridRow row) { return std::stoi(table[row][1]); }));
}

TEST(GridSort, NeedsAShallowStackWhateverTheRowsHold) {
  MeasuredStack stack;
  const auto depth = [&](GridRow rows, By by, auto cell) {
    Rows order(rows);
    std::iota(order.begin(), order.end(), 0u);
    return stack.run([&] { sortGrid(order, {0, by, {}}, cell); });
  };
  constexpr GridRow kFew = 100, kMany = 5'000;
  const auto equal = [](GridRow, int) { return std::string("5"); };
  const auto falling = [](GridRow row, int) { return std::to_string(kMany - row); };
  const auto sawtooth = [](GridRow row, int) {
    return std::to_string(row < kMany / 2 ? row : kMany - row);
  };
  // Fifty times the rows take few more levels; one level a row would end the test.
  for (const By by : {By::Number, By::Text}) {
    const std::size_t few = depth(kFew, by, falling);
    EXPECT_LT(depth(kMany, by, equal), 6 * few);
    EXPECT_LT(depth(kMany, by, falling), 6 * few);
    EXPECT_LT(depth(kMany, by, sawtooth), 6 * few);
  }
}

}  // namespace
}  // namespace kelvane
