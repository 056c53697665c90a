#pragma once

#include <memory>
#include <optional>
#include <vector>

#include "components/sondrel/radios/server_search.h"
#include "components/sondrel/receiver_entry.h"
#include "gui/win32/dialog_window.h"

namespace kelvane::sondrel {

/// The dialog that looks for servers which run already, here and on a computer that the operator
/// names. The looking goes on beside it.
class FindServersDialog : public win32::DialogWindow {
 public:
  /// `known` are places that are not to be offered.
  FindServersDialog(HWND owner, std::vector<ServerPlace> known);

  /// The server that was added; none where the dialog was left otherwise.
  const std::optional<ReceiverEntry>& added() const { return added_; }

 private:
  void command(int control, int notice) override;
  bool notified(const NMHDR& notice, LRESULT& result) override;
  void tick() override { show(); }
  void laidOut() override;
  int defaultButton() const override;

  void look();
  void show();
  void addServer();
  int selected() const;

  const std::vector<ServerPlace> known_;
  std::vector<FoundServer> found_;
  std::unique_ptr<ServerSearch> search_;
  std::optional<ReceiverEntry> added_;
};

/// The places of servers that receivers are behind already, or that are started for them.
std::vector<ServerPlace> placesOf(const std::vector<ReceiverEntry>& receivers);

}  // namespace kelvane::sondrel
