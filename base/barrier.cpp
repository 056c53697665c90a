#include "base/barrier.h"

#include <algorithm>
#include <exception>
#include <mutex>
#include <new>
#include <stdexcept>
#include <vector>

namespace kelvane {

namespace {

constexpr std::size_t kMostFaults = 100;

struct Faults {
  struct Row {
    std::string text;
    int times = 1;
  };
  std::mutex mutex;
  std::vector<Row> rows;
};

Faults& faults() {
  static Faults noted;
  return noted;
}

std::string wordsOfThrown() {
  try {
    throw;
  } catch (const std::bad_alloc&) {
    return "there is not enough memory";
  } catch (const std::length_error&) {
    return "it is too large";
  } catch (const std::exception& error) {
    return *error.what() ? error.what() : "an error without words";
  } catch (...) {
    return "an error of an unknown kind";
  }
}

void keepFault(std::string text) {
  Faults& noted = faults();
  const std::lock_guard lock(noted.mutex);
  const auto same = std::ranges::find(noted.rows, text, &Faults::Row::text);
  if (same != noted.rows.end())
    ++same->times;
  else if (noted.rows.size() < kMostFaults)
    noted.rows.push_back({std::move(text)});
}

}  // namespace

std::string thrownWords() noexcept {
  try {
    return wordsOfThrown();
  } catch (...) {
    return "no memory";  // short enough to need none
  }
}

void noteFault(std::string_view where, std::string_view words) noexcept {
  try {
    keepFault(std::string(where) + ": " + std::string(words));
  } catch (...) {
    // Without memory for a line there is nothing to keep it in.
  }
}

std::string notedFaults() {
  Faults& noted = faults();
  const std::lock_guard lock(noted.mutex);
  std::string text;
  for (const Faults::Row& row : noted.rows) {
    text += row.text;
    if (row.times > 1) text += " (" + std::to_string(row.times) + " times)";
    text += '\n';
  }
  return text;
}

}  // namespace kelvane
