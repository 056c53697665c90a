#pragma once

#include <functional>
#include <string>
#include <string_view>
#include <utility>

namespace kelvane {

/// Hears in words why something failed.
using Failed = std::function<void(const std::string& words)>;

/// What the exception that is being handled says of itself, for people; never empty. To be called
/// from a catch block.
std::string thrownWords() noexcept;

/// Keeps a fault that was stopped, for the report. `where` says what was being done. From any
/// thread. There is one list for each library and program, since callbacks of the system hand over
/// no object that it could lie in; a fault that comes again is counted, and of more than a hundred
/// different ones the first are kept.
void noteFault(std::string_view where, std::string_view words) noexcept;

/// The faults that were noted in this library or program, a line each; empty when there were none.
std::string notedFaults();

/// Runs work where nothing may be thrown any further: at the beginning of a thread, in a callback
/// of the system. What it throws ends here, is noted, and is handed in words to `failed`, if there
/// is one. Answers whether nothing was thrown.
template <class Work>
bool barrier(std::string_view where, Work&& work, const Failed& failed = {}) noexcept {
  try {
    std::forward<Work>(work)();
    return true;
  } catch (...) {
    const std::string words = thrownWords();
    noteFault(where, words);
    try {
      if (failed) failed(words);
    } catch (...) {
      noteFault(where, thrownWords());
    }
    return false;
  }
}

}  // namespace kelvane
