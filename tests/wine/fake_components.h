#pragma once

#include <functional>

#include "contract/win32/server/ambrel_face.h"
#include "contract/win32/server/sondrel_face.h"
#include "contract/win32/table_macros.h"
#include "tests/wine/com_support.h"

namespace kelvane::test {

#define ASK(name, Result, fallback, params, args)                       \
  Answer<Result> name params override {                                 \
    return answered<Result>(called(#name COMMA_BEFORE args), fallback); \
  }
#define TELL(name, params, args) \
  Outcome name params override { return called(#name COMMA_BEFORE args); }
#define WALK(name, params, args)                                     \
  Answer<FrqRecord> name params override {                           \
    return answered<FrqRecord>(called(#name COMMA_BEFORE args), {}); \
  }
class FakeReceivers final : public ReceiverComponent, public FakeCalls {
 public:
#include "contract/sondrel_operations.inc"
};
class FakeFrequencies final : public FrequencyComponent, public FakeCalls {
 public:
#include "contract/ambrel_operations.inc"
};
#undef ASK
#undef TELL
#undef WALK

/// Remembers what it hears, and may do something in its handler.
class Heard {
 public:
  std::vector<std::string> events;
  std::function<void()> then;

 protected:
  template <class... Args>
  void hear(const char* name, const Args&... args) {
    events.push_back(callText(name, args...));
    if (then) then();
  }
};

#define EVENT(name, params, args) \
  void name params override { hear(#name COMMA_BEFORE args); }
class HeardReceivers final : public ReceiverListener, public Heard {
 public:
#include "contract/sondrel_events.inc"
};
class HeardFrequencies final : public FrequencyListener, public Heard {
 public:
#include "contract/ambrel_events.inc"
};
#undef EVENT

/// Counts a component's calls, as its host would.
class NoWatch final : public com::CallWatch {
 public:
  void callBegins() override { ++depth; }
  void callEnds() override { --depth; }
  int depth = 0;
};

/// The type library of a built component, read from its file beside this program.
com::TypeLibrary typesOf(const wchar_t* file, REFIID operations, REFCLSID coclass);

/// COM objects whose component is a fake.
class FakeSondrel final : public com::SondrelFace {
 public:
  explicit FakeSondrel(bool* ended = nullptr);
  ~FakeSondrel() override;
  using SondrelFace::listener;

  FakeReceivers fake;
  NoWatch calls;

 private:
  ReceiverComponent& component() override { return fake; }
  com::CallWatch& watch() override { return calls; }
  bool* ended_;
};

class FakeAmbrel final : public com::AmbrelFace {
 public:
  FakeAmbrel();
  using AmbrelFace::listener;

  FakeFrequencies fake;
  NoWatch calls;

 private:
  FrequencyComponent& component() override { return fake; }
  com::CallWatch& watch() override { return calls; }
};

}  // namespace kelvane::test
