#pragma once

#include <algorithm>
#include <cstddef>
#include <future>
#include <thread>
#include <vector>

namespace kelvane {

/// Does work on many things in parts that lie one behind the other: the first part on this thread
/// and each other one on a thread of its own, as many as there are processors. `work(part, first,
/// end)` does the things from `first` to before `end` and keeps in `part` what came of them.
/// Answers the parts in their order when all are done; what the work threw in one of them is thrown
/// here then.
/// @param worthAThread  how many things are; fewer are done in one part
template <class Part, class Work>
std::vector<Part> inParts(std::size_t count, std::size_t worthAThread, const Work& work) {
  const std::size_t most = std::max(1u, std::thread::hardware_concurrency());
  std::vector<Part> parts(std::clamp<std::size_t>(count / worthAThread, 1, most));
  const auto doPart = [&](std::size_t number) {
    work(parts[number], count * number / parts.size(), count * (number + 1) / parts.size());
  };
  // They are waited for also where this thread throws. Where the system has no thread to give, the
  // part is done here in the end.
  std::vector<std::future<void>> others;
  others.reserve(parts.size());
  for (std::size_t number = 1; number < parts.size(); ++number)
    others.push_back(std::async(doPart, number));
  doPart(0);
  for (std::future<void>& other : others) other.get();
  return parts;
}

}  // namespace kelvane
