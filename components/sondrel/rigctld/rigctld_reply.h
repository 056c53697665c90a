#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace kelvane::sondrel {

/// How the end of a command's reply is recognised.
struct ReplyRule {
  enum class End {
    Lines,      ///< after a number of lines; an error report ends it too
    Report,     ///< at the report line that follows the header and the values
    AnyReport,  ///< the same, but the header may be missing
    Done,       ///< at a line "done", or when the line falls quiet
    Quiet,      ///< only when the line falls quiet
  };
  End end = End::Quiet;
  int lines = 1;          ///< for Lines
  std::string header{};   ///< for both reports: the command's long name, which begins the reply
  std::string command{};  ///< for AnyReport: the command itself, which some servers head it with
};

/// A reply, cut into lines and freed from control bytes.
struct Reply {
  std::vector<std::string> lines;  ///< without header and report
  std::optional<int> report;       ///< 0 for success, else the error's number without its sign
  bool headed = false;             ///< began with the command's long name

  bool ok() const { return report.value_or(0) == 0; }
};

/// Reads replies out of a stream of bytes, whatever pieces it comes in. Holds a bounded amount.
class ReplyReader {
 public:
  enum class Progress {
    Waiting,   ///< the reply is not whole yet
    Complete,  ///< take() has it
    Flooded,   ///< longer than any reply; the connection is of no more use
  };

  /// The next bytes answer a command of this rule.
  void begin(ReplyRule rule);
  Progress feed(std::string_view bytes);
  /// Nothing came for a while: ends a reply that ends by quiet.
  Progress quiet();
  /// The whole reply; the reader then waits for nothing.
  Reply take();

  bool waiting() const { return waiting_; }
  /// Some of the reply has arrived, but not all.
  bool partial() const { return waiting_ && heard_ > 0; }
  /// Bytes came that belong to no reply; asking forgets it.
  bool takeStray();
  /// A reply of this rule ends when the line falls quiet.
  bool endsByQuiet() const;

 private:
  void line();
  bool isHeader(std::string_view text);
  void reportLine(int report);
  void complete() { done_ = true; }

  ReplyRule rule_;
  Reply reply_;
  std::string line_;
  std::size_t heard_ = 0;
  bool waiting_ = false;
  bool done_ = false;
  bool headed_ = false;   ///< what comes is this reply's
  bool foreign_ = false;  ///< what comes is an older command's
  bool stray_ = false;
};

/// The number of a report line ("RPRT -11"), without its sign; none for any other line.
std::optional<int> reportOf(std::string_view line);

/// The value of a line that may carry a label ("Frequency: 7050000", "7050000").
std::string_view valueOf(std::string_view line);

/// The text as one finite decimal number and nothing else.
std::optional<double> numberOf(std::string_view text);

/// The same, rounded to whole; none where it does not fit.
std::optional<std::int32_t> wholeOf(std::string_view text);

}  // namespace kelvane::sondrel
