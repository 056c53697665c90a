#pragma once

#include <algorithm>
#include <cstddef>
#include <vector>

#include <pthread.h>

namespace kelvane {

/// Runs work on a stack of its own and tells how deep it went.
class MeasuredStack {
 public:
  /// The bytes of stack that the work touched.
  template <class Work>
  std::size_t run(Work work) {
    std::fill(stack_.begin(), stack_.end(), kFresh);
    pthread_attr_t attributes;
    pthread_attr_init(&attributes);
    pthread_attr_setstack(&attributes, stack_.data(), stack_.size());
    const auto start = [](void* given) -> void* {
      (*static_cast<Work*>(given))();
      return nullptr;
    };
    pthread_t thread;
    const bool started = pthread_create(&thread, &attributes, start, &work) == 0;
    if (started) pthread_join(thread, nullptr);
    pthread_attr_destroy(&attributes);
    const auto deepest =
        std::find_if(stack_.begin(), stack_.end(), [](std::byte byte) { return byte != kFresh; });
    return started ? static_cast<std::size_t>(stack_.end() - deepest) : stack_.size();
  }

 private:
  static constexpr std::byte kFresh{0xA7};
  std::vector<std::byte> stack_ = std::vector<std::byte>(8 << 20);
};

}  // namespace kelvane
