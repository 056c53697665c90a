// The turns that a component's host gives it.
#include "contract/win32/server/component_host.h"

#include <atomic>
#include <thread>

#include "contract/win32/server/face.h"
#include "tests/wine/com_support.h"

namespace kelvane::test {

namespace {

using std::chrono::steady_clock;

/// A component that counts its turns, and an identity that counts its references.
class Hosted final : public com::HostedComponent, public IUnknown {
 public:
  IUnknown& identity() override { return *this; }
  void deliverEvents() override {
    ++deliveries;
    if (inDelivery) inDelivery();
  }
  void tick(Instant now) override {
    if (now < due) return;
    ++ticks;
    due = kNever;
  }
  Instant nextDue() override { return due; }

  STDMETHODIMP QueryInterface(REFIID, void**) override { return E_NOINTERFACE; }
  STDMETHODIMP_(ULONG) AddRef() override { return ++references; }
  STDMETHODIMP_(ULONG) Release() override {
    const ULONG left = --references;
    if (left == 0) host.reset();
    return left;
  }

  int deliveries = 0;
  int ticks = 0;
  Instant due = kNever;
  std::function<void()> inDelivery;
  ULONG references = 0;
  std::unique_ptr<com::ComponentHost> host = std::make_unique<com::ComponentHost>(*this);
};

/// A call from outside, as any operation is one.
void call(com::ComponentHost& host, const std::function<void()>& inside = {}) {
  const com::face::InCall entered(host);
  if (inside) inside();
}

class Host : public ComTest {
 protected:
  Hosted hosted;
  com::ComPtr<IUnknown> user{&hosted};  // who created the component
};

TEST_F(Host, DeliversOnceForManyWakeUpsFromAnyThread) {
  std::vector<std::thread> threads;
  for (int i = 0; i < 4; ++i) {
    threads.emplace_back([&] {
      for (int n = 0; n < 10'000; ++n) hosted.host->wake();
    });
  }
  for (std::thread& thread : threads) thread.join();
  EXPECT_EQ(hosted.deliveries, 0) << "never from inside the call that wakes";
  pump();
  EXPECT_EQ(hosted.deliveries, 1);
  hosted.host->wake();
  pump();
  EXPECT_EQ(hosted.deliveries, 2);
}

/// A message queue that is full at first.
std::atomic<int> refusals;
BOOL WINAPI postLater(HWND window, UINT message, WPARAM wparam, LPARAM lparam) {
  if (refusals-- <= 0) return PostMessageW(window, message, wparam, lparam);
  SetLastError(ERROR_NOT_ENOUGH_QUOTA);
  return FALSE;
}

TEST_F(Host, WakesAreRepeatedUntilTheQueueTakesThem) {
  refusals = 3;
  const HWND window = CreateWindowExW(0, L"STATIC", nullptr, 0, 0, 0, 0, 0, HWND_MESSAGE, nullptr,
                                      nullptr, nullptr);
  win32::PostedWake wake(window, WM_APP + 7, postLater);
  wake.post();
  EXPECT_TRUE(pumpUntil([] { return refusals < 0; })) << "posted again and again, and taken";
  DestroyWindow(window);
}

TEST_F(Host, DeliversAgainWhatArrivesDuringADelivery) {
  hosted.inDelivery = [&] {
    if (hosted.deliveries == 1) {
      hosted.host->wake();
      pump();  // a handler that shows a message
      EXPECT_EQ(hosted.deliveries, 2);
      hosted.host->wake();
    }
  };
  hosted.host->wake();
  pump();
  EXPECT_EQ(hosted.deliveries, 3);
}

TEST_F(Host, HoldsEventsBackWhileACallerIsInside) {
  call(*hosted.host, [&] {
    call(*hosted.host, [&] {
      hosted.host->wake();
      pump();  // a dialog
    });
    pump();
    EXPECT_EQ(hosted.deliveries, 0);
  });
  EXPECT_EQ(hosted.deliveries, 0);
  pump();
  EXPECT_EQ(hosted.deliveries, 1);
}

TEST_F(Host, TicksWhenATickFallsDueAndNotOtherwise) {
  hosted.due = steady_clock::now() + milliseconds(30);
  call(*hosted.host);
  EXPECT_TRUE(pumpUntil([&] { return hosted.ticks == 1; }));
  hosted.due = steady_clock::now() + std::chrono::hours(24 * 365);
  call(*hosted.host);
  hosted.due = steady_clock::now() - milliseconds(30);  // what is overdue comes at once
  call(*hosted.host);
  EXPECT_TRUE(pumpUntil([&] { return hosted.ticks == 2; }));
  hosted.due = steady_clock::now() + milliseconds(1);
  call(*hosted.host);
  hosted.due = kNever;
  call(*hosted.host);
  Sleep(30);
  pump();
  EXPECT_EQ(hosted.ticks, 2);
}

TEST_F(Host, AComponentMayEndInsideItsOwnTurn) {
  hosted.inDelivery = [&] {
    user = {};
    EXPECT_TRUE(hosted.host) << "it is still delivering";
  };
  hosted.host->wake();
  pump();
  EXPECT_FALSE(hosted.host);
  EXPECT_EQ(hosted.deliveries, 1);
}

TEST_F(Host, ATurnThatFailsIsNotTheLast) {
  hosted.inDelivery = [&] {
    if (hosted.deliveries == 1) throw std::runtime_error("out of order");
  };
  hosted.host->wake();
  pump();
  hosted.host->wake();
  pump();
  EXPECT_EQ(hosted.deliveries, 2);
}

TEST_F(Host, TwoComponentsOfOneLibraryDoNotDisturbEachOther) {
  auto second = std::make_unique<Hosted>();
  second->host->wake();
  hosted.host->wake();
  second.reset();
  pump();
  EXPECT_EQ(hosted.deliveries, 1);
  Hosted third;
  third.host->wake();
  pump();
  EXPECT_EQ(third.deliveries, 1);
}

}  // namespace
}  // namespace kelvane::test
