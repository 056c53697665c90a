#include "components/sondrel/sharing/share_session.h"

#include <utility>

#include "components/sondrel/sharing/share_reply.h"

namespace kelvane::sondrel {

namespace {

constexpr std::size_t kLongestCommandLine = 1024;
constexpr std::size_t kAnswersAtOnce = 16 * 1024;

}  // namespace

ShareSession::ShareSession(SharedReceiver& receiver, std::string client, std::function<void()> wake)
    : receiver_(receiver), client_(std::move(client)), wake_(std::move(wake)) {}

void ShareSession::received(std::string_view bytes) {
  if (!ended_) input_ += bytes;
}

std::string ShareSession::answer(Instant now) {
  std::string out;
  while (!ended_ && out.size() < kAnswersAtOnce) {
    const std::string_view rest = std::string_view(input_).substr(read_);
    const auto end = rest.find('\n');
    const std::string_view line = rest.substr(0, end);
    if (line.size() > kLongestCommandLine) {
      ended_ = true;
      out += "RPRT -1\n";
    }
    if (ended_ || end == std::string_view::npos) break;
    answerLine(line, out, now);
    read_ += end + 1;
  }
  if (out.size() < kAnswersAtOnce) input_.erase(0, std::exchange(read_, 0));
  return out;
}

void ShareSession::answerLine(std::string_view line, std::string& out, Instant now) {
  ShareLine commands(line);
  while (const auto command = commands.next()) {
    lastAsked_ = now;
    const SharedFacts facts = receiver_.facts();
    std::vector<ShareOrder> orders;
    ShareReply reply(out, *command);
    Asked asked{*command, facts, reply, now, vfoOption_, ended_, orders};
    reply.close(command->row ? command->row->answer(asked) : RigStatus::NotAvailable);
    for (ShareOrder& order : orders) {
      order.client = client_;
      if (receiver_.order(std::move(order))) wake_();
    }
    if (ended_) return;
  }
}

}  // namespace kelvane::sondrel
