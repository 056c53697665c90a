#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <unordered_map>

namespace kelvane {

/// Walks through the records of an ADIF text. Lengths are heeded as the format has them, in bytes;
/// where a program counted letters instead the value goes on to the next field.
class AdifRecords {
 public:
  explicit AdifRecords(std::string_view bytes);

  /// Whether a file may be one.
  static bool isAdif(std::string_view bytes);

  /// Moves to the next record that has a field; false when there is none.
  bool next();
  /// The line that the record begins in, from 1.
  std::size_t line() const { return line_; }
  /// The record is the last one and has no end: the file is cut there.
  bool cut() const { return cut_; }
  /// By their names in capitals; values in UTF-8 without blanks at either end.
  const std::unordered_map<std::string, std::string>& fields() const { return fields_; }
  std::string_view field(const char* name) const;

 private:
  bool takeField();

  std::string_view all_;
  std::size_t at_ = 0, counted_ = 0;
  std::size_t line_ = 1, lines_ = 1;
  bool cut_ = false;
  std::unordered_map<std::string, std::string> fields_;
};

}  // namespace kelvane
