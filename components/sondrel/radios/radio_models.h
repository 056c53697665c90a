#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace kelvane::sondrel {

/// One model of a radio that rigctld knows.
struct RadioModel {
  std::int32_t number = 0;
  std::string maker;
  std::string name;
  std::string status;  ///< how well it was tried: "Stable", "Beta", "Alpha", "Untested"
};

/// Reads what `rigctld -l` prints, the columns where its heading has them; the models by maker and
/// name. Lines that are no model's are passed over. None where there is no such heading.
std::optional<std::vector<RadioModel>> readModels(std::string_view text);

/// How a model is connected, and what its line can be, from what `rigctld -m N -u` and, for the
/// address of an Icom radio, `rigctld -m N -L` print.
struct ModelFacts {
  enum class Connection { Unknown, Serial, Network, None };
  Connection connection = Connection::Unknown;
  std::int32_t slowest = 0;  ///< baud; 0 where nothing is told
  std::int32_t fastest = 0;
  bool handshake = false;  ///< the model's line uses RTS and CTS
  int civ = -1;            ///< the usual address of an Icom radio; -1 for others
};
ModelFacts readModelFacts(std::string_view capabilities, std::string_view settings);

/// The usual speeds of serial lines within a model's range, the fastest first; all of them where
/// the range is not known.
std::vector<std::int32_t> speedsOf(const ModelFacts& facts);

/// Finds models by any part of maker and name that is typed.
class ModelSearch {
 public:
  /// The models outlive this object.
  explicit ModelSearch(const std::vector<RadioModel>& models);

  /// Places of the models whose maker and name hold each typed word, in any order and in capital or
  /// small letters; blanks and hyphens within a name need not be typed. `maker` is empty for all.
  std::vector<std::size_t> find(std::string_view maker, std::string_view typed) const;
  /// The makers in their order.
  std::vector<std::string> makers() const;

 private:
  const std::vector<RadioModel>& models_;
  std::vector<std::string> letters_;  ///< maker and name of each, as they are sought
};

}  // namespace kelvane::sondrel
