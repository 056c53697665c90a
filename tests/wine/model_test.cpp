#include <windows.h>

#include <gtest/gtest.h>

#include <random>
#include <set>
#include <sstream>

#include "tests/wine/instance.h"
#include "tests/wine/model_sondrel/model_board.h"
#include "tests/wine/running_panel.h"
#include "ui/control_ids.h"

namespace kelvane::wine {
namespace {

constexpr int kInputs = 3000;
constexpr int kModelRadios = 8;

/// A copy of the program whose radios are made up.
class ModelCopy : public ProgramCopy {
 public:
  ModelCopy() {
    using namespace std::filesystem;
    copy_file(programFolder() / L"..\\model\\Sondrel.dll", folder() / L"Sondrel.dll",
              copy_options::overwrite_existing);
    copy(programFolder() / L"data", folder() / L"data",
         copy_options::recursive | copy_options::overwrite_existing);
  }
};

void turnWheel(LONG notch) {
  INPUT input{};
  input.type = INPUT_MOUSE;
  input.mi.dwFlags = MOUSEEVENTF_WHEEL;
  input.mi.mouseData = static_cast<DWORD>(notch);
  SendInput(1, &input, sizeof input);
}

/// A button of the mouse goes down or up at a place of the screen. Place and button are one input:
/// the display's late word of an earlier place may come between two.
void mouseAt(POINT place, DWORD button) {
  INPUT input{};
  input.type = INPUT_MOUSE;
  input.mi.dwFlags = button | MOUSEEVENTF_MOVE | MOUSEEVENTF_ABSOLUTE;
  const auto part = [](LONG at, int size) { return (at * 65536 + 32768) / GetSystemMetrics(size); };
  input.mi.dx = part(place.x, SM_CXSCREEN);
  input.mi.dy = part(place.y, SM_CYSCREEN);
  SendInput(1, &input, sizeof input);
}

/// Real inputs at random on the real program before made-up radios, each of which marks all its
/// values with its number.
class Model : public testing::Test {
 protected:
  void SetUp() override { ASSERT_TRUE(panel_.settledOn(0)); }

  int any(int below) { return static_cast<int>(random_() % static_cast<unsigned>(below)); }

  void order(test::ModelBoard::Order order, int mark, int number) {
    board_->order = order;
    board_->mark = mark;
    board_->number = number;
    ++board_->orders;
    SetEvent(board_.ordered());
    WaitForSingleObject(board_.carriedOut(), 20000);
  }

  /// Until the window has taken all inputs: what one of them brings late must not count for the
  /// next.
  void settle() {
    const ULONGLONG end = GetTickCount64() + 20000;
    do {
      ASSERT_LT(GetTickCount64(), end) << "the window left inputs lying";
      order(test::ModelBoard::SayInputs, 0, 0);
    } while (board_->inputs != 0);
  }

  POINT middle(int id) const {
    RECT area;
    GetWindowRect(panel_.control(id), &area);
    return {(area.left + area.right) / 2, (area.top + area.bottom) / 2};
  }

  /// One input of the hand; answers whether it may choose another radio.
  bool hand() {
    constexpr std::string_view typed =
        "0123456789.,+-\r\b\x1b"
        "mufbclr";
    constexpr std::array<WORD, 10> keys{VK_UP,  VK_DOWN,     VK_LEFT,  VK_RIGHT, VK_HOME,
                                        VK_ADD, VK_SUBTRACT, VK_PRIOR, VK_NEXT,  VK_DELETE};
    constexpr std::array<int, 14> labels{
        id::ModEvent + 0, id::ModEvent + 1, id::ModEvent + 2, id::ModEvent + 3, id::ModEvent + 4,
        id::SM,           id::VChn,         id::Band,         id::FAlt,         id::HFF,
        id::FrqBfo,       id::VStep,        id::IO,           id::FrqDigit + 5};
    const int what = any(12);
    if (what < 5) {
      const SHORT code = VkKeyScanW(static_cast<wchar_t>(typed[any(typed.size())]));
      said_ << "key " << LOBYTE(code) << "; ";
      if (LOBYTE(code) == 'L' || LOBYTE(code) == 'U') lockChanges();
      panel_.keyHere(LOBYTE(code), HIBYTE(code));
    } else if (what < 7) {
      const int key = any(keys.size()), shift = any(4);
      said_ << "key " << keys[key] << " with " << shift << "; ";
      panel_.keyHere(keys[key], shift);
    } else if (what < 10) {
      pressAndRelease(labels[any(labels.size())], labels[any(labels.size())]);
    } else if (what == 10) {
      said_ << "wheel; ";
      turnWheel(any(2) ? 120 : -120);
    } else {
      const int tab = chosen_ = any(kModelRadios);
      said_ << "tab " << tab << "; ";
      panel_.pointAtTab(tab);
      panel_.clickHere();
      return true;
    }
    return false;
  }

  /// A press on one control, released there or, one time in three, on another: then it is none.
  void pressAndRelease(int pressed, int released) {
    if (any(3) != 0) released = pressed;
    if (!panel_.visible(pressed)) return;
    said_ << "press " << pressed << ", release " << released << "; ";
    mouseAt(middle(pressed), MOUSEEVENTF_LEFTDOWN);
    mouseAt(middle(released), MOUSEEVENTF_LEFTUP);
    const bool button = pressed >= id::ModEvent && pressed < id::ModEvent + 5;
    if (button && GetTickCount64() > lockedUntil_)
      wanted_ = released == pressed && panel_.enabled(pressed) ? 1 : 0;
  }

  /// Something at a radio that is not shown, or its link; never what would take the display.
  void radio() {
    const int mark = any(kModelRadios);
    const int number = any(1 << 12) * 16 + 2 + any(14);
    const bool link = any(4) == 0;
    if (mark == panel_.selectedTab() && (link || number % 16 == 7)) lockChanges();
    if (link)
      order(any(2) ? test::ModelBoard::LinkUp : test::ModelBoard::LinkDown, mark, 0);
    else
      order(test::ModelBoard::Happens, mark, number);
  }

  /// The shown radio is about to be locked or unlocked, and a slow one tells it later.
  void lockChanges() { lockedUntil_ = GetTickCount64() + 600; }

  std::string wrongRequests(LONG from, int shown) const {
    std::set<std::string> kinds;
    int steps = 0;
    for (LONG i = from; i < board_->requests; ++i) {
      const std::string request = board_.request(i);
      std::istringstream words(request);
      std::string name;
      int rx = -1;
      words >> name >> rx;
      if (name == "SetRxShown" || name == "SetRxConnect" || name == "SetRxTime" ||
          name == "EndRxKeys")
        continue;
      if (rx != shown) return request + " while " + std::to_string(shown) + " is shown";
      if (!kinds.insert(name).second) return "twice " + request;
      steps += name.starts_with("NextRx");
    }
    if (wanted_ >= 0 && steps != wanted_)
      return std::to_string(steps) + " steps for a hand's " + std::to_string(wanted_);
    return {};
  }

  std::string wrongValues(int mark) const {
    for (const int named : {id::ModEvent + 0, id::ModEvent + 2, id::ModEvent + 4, id::SM + 0}) {
      const std::string text = panel_.visible(named) ? panel_.text(named) : "";
      const std::size_t dot = text.find('.');
      if (dot != std::string::npos && dot > 0 && text[dot - 1] != '0' + mark)
        return "\"" + text + "\" for radio " + std::to_string(mark);
    }
    if (panel_.caption().find("[Type: radio-" + std::to_string(mark) + "]") == std::string::npos)
      return panel_.caption() + " for radio " + std::to_string(mark);
    return {};
  }

  std::string wrongKeyboard() const {
    GUITHREADINFO info{};
    info.cbSize = sizeof info;
    GetGUIThreadInfo(GetWindowThreadProcessId(panel_.window(), nullptr), &info);
    if (!info.hwndFocus) return "nothing has the keyboard";
    if (GetAncestor(info.hwndFocus, GA_ROOT) != panel_.window()) return "another window has it";
    if (!IsWindowEnabled(info.hwndFocus) || !IsWindowVisible(info.hwndFocus))
      return "a control that takes no keys has it";
    return {};
  }

  std::mt19937 random_{20261122};
  test::SharedModel board_;
  const ModelCopy copy_;
  const Instance instance_{L"TestModel"};
  RunningPanel panel_{instance_.name(), copy_.folder()};
  std::ostringstream said_;
  ULONGLONG lockedUntil_ = 0;
  int chosen_ = -1;  ///< the tab that the hand pressed; -1 for any other input
  int wanted_ = -1;  ///< steps that the hand's press on a button is; -1 for any other input
};

TEST_F(Model, HoldsForThousandsOfRealInputs) {
  for (int i = 0; i < kInputs; ++i) {
    said_.str("");
    wanted_ = chosen_ = -1;
    const int before = panel_.selectedTab();
    const LONG requests = board_->requests;
    bool mayMove = false;
    if (any(4) == 0)
      radio();
    else
      mayMove = hand();
    settle();
    const int expected = mayMove ? chosen_ : before;
    ASSERT_TRUE(eventually([&] { return panel_.selectedTab() == expected; }, mayMove ? 8000 : 0))
        << i << ": " << said_.str() << panel_.selectedTab() << " is shown";
    std::string wrong;
    const auto right = [&] { return (wrong = wrongRequests(requests, before)).empty(); };
    ASSERT_TRUE(mayMove || eventually(right, 8000)) << i << ": " << said_.str() << wrong;
    const auto true_ = [&] { return (wrong = wrongValues(panel_.selectedTab())).empty(); };
    ASSERT_TRUE(eventually(true_, 8000)) << i << ": " << said_.str() << wrong;
    ASSERT_TRUE((wrong = wrongKeyboard()).empty()) << i << ": " << said_.str() << wrong;
  }
}

}  // namespace
}  // namespace kelvane::wine
