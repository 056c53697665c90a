#include <fstream>
#include <memory>

#include "tests/fakes/panel_play.h"
#include "tests/fuzz/fuzz_target.h"

#ifdef KELVANE_FUZZER
#include <sanitizer/common_interface_defs.h>
#endif

namespace {

using namespace kelvane;

/// A panel that plays many inputs: to start one takes as long as thousands of keys. What it has
/// played since is one input too, which brings the same about.
class Session {
 public:
  void play(std::string_view input) {
    if (!panel_ || played_.size() > kMostPlayed) begin();
    // An odd byte at the end is no key, and would shift what follows.
    const std::string_view keys = input.substr(0, input.size() / 2 * 2);
    played_ += keys;
    steps_ += keys.size() / 2;
    const auto* bytes = reinterpret_cast<const std::uint8_t*>(keys.data());
    const std::string wrong = panel_->play({bytes, keys.size()});
    if (!wrong.empty()) keep();
    fuzz::promise(wrong.empty(), wrong);
  }

  ~Session() { std::fprintf(stderr, "%zu key steps.\n", steps_); }

  void keep() const {
    constexpr const char* kFile = "panel_keys-since-the-start";
    std::ofstream(kFile, std::ios::binary) << played_;
    std::fprintf(stderr, "All keys since the panel's start lie in %s.\n", kFile);
  }

 private:
  static constexpr std::size_t kMostPlayed = 1 << 17;

  void begin() {
    panel_.reset();
    panel_ = std::make_unique<fakes::PanelPlay>();
    played_.clear();
  }

  std::unique_ptr<fakes::PanelPlay> panel_;
  std::string played_;
  std::size_t steps_ = 0;
};

Session& session() {
  static Session one;
#ifdef KELVANE_FUZZER
  static const bool heard = (__sanitizer_set_death_callback([] { session().keep(); }), true);
  static_cast<void>(heard);
#endif
  return one;
}

}  // namespace

FUZZ_TARGET(panel_keys) { session().play(input); }
