#include "components/sondrel/rigctld/rigctld_reply.h"

#include <charconv>
#include <cmath>
#include <limits>
#include <utility>

#include "base/text.h"

namespace kelvane::sondrel {

namespace {

// The longest line of a real server lists the tone codes (about 600 bytes), its longest reply is
// the description of a radio (about 9 KB in 300 lines).
constexpr std::size_t kLongestLine = 4096;
constexpr std::size_t kLongestReply = 65536;
constexpr std::size_t kMostLines = 1000;

}  // namespace

void ReplyReader::begin(ReplyRule rule) {
  rule_ = std::move(rule);
  reply_ = {};
  line_.clear();
  heard_ = 0;
  waiting_ = true;
  done_ = false;
  headed_ = rule_.end != ReplyRule::End::Report && rule_.end != ReplyRule::End::AnyReport;
  foreign_ = false;
}

ReplyReader::Progress ReplyReader::feed(std::string_view bytes) {
  for (std::size_t i = 0; i < bytes.size(); ++i) {
    if (!waiting_ || done_) {
      stray_ = true;
      break;
    }
    if (++heard_ > kLongestReply) return Progress::Flooded;
    const char byte = bytes[i];
    if (byte == '\n') {
      line();
      if (reply_.lines.size() > kMostLines) return Progress::Flooded;
    } else if (static_cast<unsigned char>(byte) >= 0x20 || byte == '\t') {
      line_ += byte;
      if (line_.size() > kLongestLine) return Progress::Flooded;
    }
  }
  return done_ ? Progress::Complete : Progress::Waiting;
}

ReplyReader::Progress ReplyReader::quiet() {
  if (waiting_ && !done_ && heard_ > 0 && endsByQuiet()) {
    if (!line_.empty()) line();
    complete();
  }
  return done_ ? Progress::Complete : Progress::Waiting;
}

Reply ReplyReader::take() {
  waiting_ = false;
  done_ = false;
  heard_ = 0;
  return std::move(reply_);
}

bool ReplyReader::takeStray() { return std::exchange(stray_, false); }

bool ReplyReader::endsByQuiet() const {
  return rule_.end == ReplyRule::End::Done || rule_.end == ReplyRule::End::Quiet;
}

void ReplyReader::line() {
  const std::string text(trimmed(line_));
  line_.clear();
  // An empty line is a list without members in a description, and nothing anywhere else.
  if (text.empty() && rule_.end != ReplyRule::End::Done) return;
  if (const auto report = reportOf(text)) return reportLine(*report);
  if (!headed_ && isHeader(text)) return;
  reply_.lines.push_back(text);
  const bool last = rule_.end == ReplyRule::End::Lines &&
                    reply_.lines.size() >= static_cast<std::size_t>(rule_.lines);
  if (last || (rule_.end == ReplyRule::End::Done && text == "done")) complete();
}

/// Answers whether a line before any value is none itself.
bool ReplyReader::isHeader(std::string_view text) {
  const bool own = text.starts_with(rule_.header + ":");
  if (own || rule_.end == ReplyRule::End::AnyReport) {
    headed_ = true;
    reply_.headed = own;
    return own || text.starts_with(rule_.command + ":");
  }
  // What comes before the header belongs to a command that nobody waits for any more.
  stray_ = foreign_ = true;
  return true;
}

void ReplyReader::reportLine(int report) {
  if (!headed_ && rule_.end != ReplyRule::End::AnyReport) {
    stray_ = true;
    // A success without its header is an echo of something else. An error may be this command's:
    // a server that refuses the password or the command says no more than that.
    if (std::exchange(foreign_, false) || report == 0) return;
  }
  if (!reply_.report) reply_.report = report;
  if (!endsByQuiet()) complete();
}

std::optional<int> reportOf(std::string_view line) {
  constexpr std::string_view kWord = "RPRT ";
  if (!line.starts_with(kWord)) return std::nullopt;
  const auto number = wholeOf(trimmed(line.substr(kWord.size())));
  if (!number || *number == std::numeric_limits<std::int32_t>::min()) return std::nullopt;
  return std::abs(*number);
}

std::string_view valueOf(std::string_view line) {
  const auto colon = line.find(": ");
  if (colon != std::string_view::npos) return trimmed(line.substr(colon + 2));
  return trimmed(line);
}

std::optional<double> numberOf(std::string_view text) {
  double number = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
  if (error != std::errc() || end != text.data() + text.size()) return std::nullopt;
  if (!std::isfinite(number)) return std::nullopt;
  return number;
}

std::optional<std::int32_t> wholeOf(std::string_view text) {
  const auto number = numberOf(text);
  if (!number) return std::nullopt;
  const double whole = std::round(*number);
  if (whole < std::numeric_limits<std::int32_t>::min()) return std::nullopt;
  if (whole > std::numeric_limits<std::int32_t>::max()) return std::nullopt;
  return static_cast<std::int32_t>(whole);
}

}  // namespace kelvane::sondrel
