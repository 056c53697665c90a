#include "components/sondrel/win32/receiver_window.h"

#include "base/win32/utf16.h"
#include "components/sondrel/win32/dialog_ids.h"
#include "components/sondrel/win32/simulated_window.h"

namespace kelvane::sondrel {

namespace {

/// In ms. It shows a meter, which moves all the time.
constexpr UINT kRefreshEvery = 200;

std::string nameOf(const SondrelCore& core, Index rx) {
  const Receiver* receiver = core.receiver(rx);
  return receiver ? receiver->name() : std::string();
}

/// The settings of a receiver that is no simulated one: what it is and how its link stands.
class PlainWindow final : public ReceiverWindow {
 public:
  PlainWindow(HWND owner, SondrelCore& core, Index rx) : ReceiverWindow(owner, core, rx, 460, 330) {
    const DriversModel drivers = core.drivers();
    const auto row = static_cast<std::size_t>(rx);
    line(16, "Kind:", 0, std::string(drivers.kindOf(row).name));
    line(40, "Host:", id::Host, drivers.parameter(row, "Host"));
    line(64, "Port:", id::Port, drivers.parameter(row, "Port"));
    line(88, "State:", id::State, "");
    line(112, "Signal:", id::Signal, "");
    add({id::Label, WC_STATICW, 0, "&What answers there:", {16, 138, 200, 18}});
    add({id::Found,
         WC_EDITW,
         ES_MULTILINE | ES_READONLY | ES_AUTOVSCROLL | WS_VSCROLL | WS_TABSTOP,
         "",
         {16, 158, 428, 128}});
    add({IDCANCEL, WC_BUTTONW, BS_DEFPUSHBUTTON | WS_TABSTOP, "&Close", {350, 294, 94, 26}});
    PlainWindow::refresh();
  }

 private:
  void line(int top, const char* label, int control, const std::string& text) {
    add({id::Label, WC_STATICW, 0, label, {16, top, 60, 18}});
    add({control, WC_STATICW, SS_NOPREFIX, text, {84, top, 360, 18}});
  }
  void refresh() override {
    setText(id::State, linkWords());
    setText(id::Signal, signalWords());
    const Receiver* receiver = core_.receiver(rx_);
    const std::string found = receiver ? receiver->found() : std::string();
    setText(id::Found, found.empty() ? "Nothing has answered yet." : win32::textLines(found));
  }
  int defaultButton() const override { return IDCANCEL; }
};

}  // namespace

ReceiverWindow::ReceiverWindow(HWND owner, SondrelCore& core, Index rx, int width, int height)
    : DialogWindow({L"KelvaneReceiver", "Settings of " + nameOf(core, rx), owner, width, height}),
      core_(core),
      rx_(rx),
      name_(nameOf(core, rx)) {
  startTimer(kRefreshEvery);
}

void ReceiverWindow::tick() {
  if (!core_.receiver(rx_) || nameOf(core_, rx_) != name_) return close();
  refresh();
}

void ReceiverWindow::command(int control, int) {
  if (control == IDCANCEL) close();
}

std::string ReceiverWindow::linkWords() const { return sondrel::linkWords(core_.receiver(rx_)); }

std::string ReceiverWindow::signalWords() const {
  const Receiver* receiver = core_.receiver(rx_);
  const auto level = receiver ? receiver->level() : std::nullopt;
  if (!level) return "none";
  return std::to_string(*level) + " dBm, squelch " + (receiver->squelchOpen() ? "open" : "closed");
}

std::unique_ptr<ReceiverWindow> makeReceiverWindow(HWND owner, SondrelCore& core, Index rx) {
  if (core.simulated(rx)) return std::make_unique<SimulatedWindow>(owner, core, rx);
  return std::make_unique<PlainWindow>(owner, core, rx);
}

std::string linkWords(const Receiver* receiver) {
  if (!receiver) return {};
  if (receiver->online()) return "Link: Up";
  const std::string fault = receiver->linkFault();
  return fault.empty() ? std::string(linkFaultWords(receiver->linkCode())) : fault;
}

}  // namespace kelvane::sondrel
