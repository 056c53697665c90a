// The components' COM interface over a fake component: each operation early bound, late bound, and
// through the client that the panel uses.
#include "contract/win32/com_frequency.h"
#include "contract/win32/com_receiver.h"
#include "tests/wine/fake_components.h"

namespace kelvane::test {

namespace {

using com::ComPtr;
using com::Variant;

/// A component's value on its way into an interface method; frees what it made.
class ToCom {
 public:
  explicit ToCom(const Text& text) : text_(com::newBstr(text)) {}
  template <class Number>
  explicit ToCom(Number number) : number_(std::is_same_v<Number, Flag> ? -number : number) {}
  ToCom(const ToCom&) = delete;
  ~ToCom() { SysFreeString(text_); }
  operator BSTR() const { return text_; }                         // NOLINT
  operator long() const { return number_; }                       // NOLINT
  operator short() const { return static_cast<short>(number_); }  // NOLINT

 private:
  BSTR text_ = nullptr;
  long number_ = 0;
};

template <class Value>
Value taken(long out) {
  return static_cast<Value>(out);
}
template <>
Flag taken(long out) {
  EXPECT_TRUE(out == VARIANT_TRUE || out == VARIANT_FALSE);
  return out != VARIANT_FALSE;
}
Text taken(BSTR out) {
  const Text text = com::textOf(out);
  SysFreeString(out);
  return text;
}

/// Calls each operation of a COM interface early bound, and compares with what the fake was asked
/// and what it answered.
template <class Interface, class Fake>
struct EarlyBound {
  Interface& object;
  FakeCalls& fake;
  int round;

  template <class... Args>
  void expectCalled(const char* name, const std::tuple<Args...>& args) {
    std::apply([&](const auto&... a) { EXPECT_EQ(fake.last, callText(name, a...)); }, args);
  }

  template <class Base, class... Params, class... In>
  void tell(const char* name, Outcome (Base::*)(Params...),
            HRESULT (STDMETHODCALLTYPE Interface::*method)(In...)) {
    const auto args = distinctArguments<Params...>(round);
    std::apply([&](const auto&... a) { EXPECT_EQ((object.*method)(ToCom(a)...), S_OK) << name; },
               args);
    expectCalled(name, args);
  }

  template <class Result, class Base, class... Params, class... In>
  void ask(const char* name, Answer<Result> (Base::*)(Params...),
           HRESULT (STDMETHODCALLTYPE Interface::*method)(In...)) {
    using Out = std::remove_pointer_t<std::tuple_element_t<sizeof...(Params), std::tuple<In...>>>;
    const auto args = distinctArguments<Params...>(round);
    ++fake.number;
    fake.flag = !fake.flag;
    Out out{};
    std::apply(
        [&](const auto&... a) { EXPECT_EQ((object.*method)(ToCom(a)..., &out), S_OK) << name; },
        args);
    expectCalled(name, args);
    const Answer<Result> expected = fake.answered<Result>(Outcome::Done, Result());
    if constexpr (std::is_same_v<Result, Text>) {
      EXPECT_EQ(taken(out), expected.value()) << name;
    } else {
      EXPECT_EQ(taken<Result>(out), expected.value()) << name;
    }
    std::apply(
        [&](const auto&... a) {
          fake.last.clear();
          EXPECT_EQ((object.*method)(ToCom(a)..., static_cast<Out*>(nullptr)), E_POINTER) << name;
          EXPECT_EQ(fake.last, "") << name << " ran though nobody can be answered";
        },
        args);
  }

  template <class Base, class... Params, class... In>
  void walk(const char* name, Answer<FrqRecord> (Base::*)(Params...),
            HRESULT (STDMETHODCALLTYPE Interface::*method)(In...)) {
    const auto args = distinctArguments<Params...>(round);
    long position = 0, count = 0, frequency = 0;
    std::apply(
        [&](const auto&... a) {
          EXPECT_EQ((object.*method)(ToCom(a)..., &position, &count, &frequency), S_OK) << name;
          EXPECT_EQ((object.*method)(ToCom(a)..., &position, nullptr, &frequency), E_POINTER);
        },
        args);
    expectCalled(name, args);
    EXPECT_EQ(FrqRecord({position, count, static_cast<Hz>(frequency)}), fake.record) << name;
  }
};

/// The same through the panel's client, which calls late bound.
template <class Client>
struct LateBound {
  Client client;
  FakeCalls& fake;
  int round;

  template <class Given, class Base, class... Params>
  void call(const char* name, Given (Base::*operation)(Params...)) {
    ++fake.number;
    fake.flag = !fake.flag;
    const auto args = distinctArguments<Params...>(round);
    std::apply([&](const auto&... a) { check(name, (client.*operation)(a...), a...); }, args);
  }

 private:
  template <class... Args>
  void check(const char* name, Outcome outcome, const Args&... args) {
    EXPECT_EQ(outcome, Outcome::Done) << name;
    EXPECT_EQ(fake.last, callText(name, args...));
  }
  template <class Result, class... Args>
  void check(const char* name, const Answer<Result>& answer, const Args&... args) {
    EXPECT_TRUE(answer.ok()) << name;
    EXPECT_EQ(fake.last, callText(name, args...));
    EXPECT_EQ(answer.value(), fake.answered<Result>(Outcome::Done, Result()).value()) << name;
  }
};

std::string lastErrorText() {
  ComPtr<IErrorInfo> info;
  if (GetErrorInfo(0, info.receive()) != S_OK) return "none";
  BSTR text = nullptr;
  info->GetDescription(&text);
  return taken(text);
}

}  // namespace

class ComFace : public ComTest {};

TEST_F(ComFace, CarriesEveryOperationEarlyBoundWithItsArgumentsInPlace) {
  const ComPtr<FakeSondrel> sondrel(new FakeSondrel);
  const ComPtr<FakeAmbrel> ambrel(new FakeAmbrel);
  for (int round : {0, 1}) {
    EarlyBound<ISondrel, FakeReceivers> receivers{*sondrel, sondrel->fake, round};
    EarlyBound<IAmbrel, FakeFrequencies> frequencies{*ambrel, ambrel->fake, round};
#define ASK(name, Result, fallback, params, args) \
  BOUND.ask(#name, &COMPONENT::name, &INTERFACE::name);
#define TELL(name, params, args) BOUND.tell(#name, &COMPONENT::name, &INTERFACE::name);
#define WALK(name, params, args) BOUND.walk(#name, &COMPONENT::name, &INTERFACE::name);
#define BOUND receivers
#define COMPONENT ReceiverComponent
#define INTERFACE ISondrel
#include "contract/sondrel_operations.inc"
#undef BOUND
#undef COMPONENT
#undef INTERFACE
#define BOUND frequencies
#define COMPONENT FrequencyComponent
#define INTERFACE IAmbrel
#include "contract/ambrel_operations.inc"
#undef BOUND
#undef COMPONENT
#undef INTERFACE
#undef ASK
#undef TELL
#undef WALK
  }
  EXPECT_EQ(sondrel->calls.depth, 0);
}

TEST_F(ComFace, CarriesEveryOperationLateBoundFromThePanelsClient) {
  const ComPtr<FakeSondrel> sondrel(new FakeSondrel);
  const ComPtr<FakeAmbrel> ambrel(new FakeAmbrel);
  for (int round : {0, 1}) {
    LateBound<com::ComReceiver> receivers{com::ComReceiver(sondrel.get()), sondrel->fake, round};
    LateBound<com::ComFrequency> frequencies{com::ComFrequency(ambrel.get()), ambrel->fake, round};
#define ASK(name, Result, fallback, params, args) receivers.call(#name, &ReceiverComponent::name);
#define TELL(name, params, args) receivers.call(#name, &ReceiverComponent::name);
#include "contract/sondrel_operations.inc"
#undef ASK
#undef TELL
#define ASK(name, Result, fallback, params, args) \
  frequencies.call(#name, &FrequencyComponent::name);
#define TELL(name, params, args) frequencies.call(#name, &FrequencyComponent::name);
#define WALK(name, params, args) frequencies.call(#name, &FrequencyComponent::name);
#include "contract/ambrel_operations.inc"
#undef ASK
#undef TELL
#undef WALK
  }
}

TEST_F(ComFace, TellsAFailureByCodeAndInWordsAndLeavesNoValueBehind) {
  const ComPtr<FakeSondrel> object(new FakeSondrel);
  long number = 99;
  BSTR text = reinterpret_cast<BSTR>(&number);
  object->fake.outcome = Outcome::Failed;
  EXPECT_EQ(object->GetRxMode(9, &number), E_FAIL);
  EXPECT_EQ(number, 0);
  EXPECT_NE(lastErrorText().find("GetRxMode"), std::string::npos);
  EXPECT_EQ(object->GetRxName(9, &text), E_FAIL);
  EXPECT_EQ(text, nullptr);
  object->fake.outcome = Outcome::Unsupported;
  EXPECT_EQ(object->NextRxMode(0), E_NOTIMPL);
  object->fake.throws = true;
  EXPECT_EQ(object->NextRxMode(0), E_UNEXPECTED);
  EXPECT_NE(lastErrorText().find("out of order"), std::string::npos);
  EXPECT_EQ(object->calls.depth, 0) << "a call that threw has ended, too";
  EXPECT_EQ(object->InterfaceSupportsErrorInfo(__uuidof(ISondrel)), S_OK);
}

TEST_F(ComFace, GivesTheClientTheStatedFallbackForEachKindOfFailure) {
  const ComPtr<FakeSondrel> object(new FakeSondrel);
  com::ComReceiver client(object.get());
  for (Outcome outcome : {Outcome::Failed, Outcome::Unsupported}) {
    object->fake.outcome = outcome;
    const Answer<Hz> frequency = client.GetRxFrequency(0, kTuned);
    EXPECT_EQ(frequency.value(), -1);
    EXPECT_EQ(frequency.outcome(), outcome);
    EXPECT_EQ(client.GetRxName(0).value(), "");
    EXPECT_EQ(client.SetRxMode(0, 1), outcome);
  }
  object->fake.throws = true;
  EXPECT_EQ(client.SetRxMode(0, 1), Outcome::Failed);
}

TEST_F(ComFace, TakesWhatAScriptPasses) {
  const ComPtr<FakeSondrel> object(new FakeSondrel);
  DISPID id = 0;
  wchar_t name[] = L"setrxfrequency";  // script languages do not mind capitals
  LPOLESTR names[] = {name};
  ASSERT_EQ(object->GetIDsOfNames(IID_NULL, names, 1, LOCALE_USER_DEFAULT, &id), S_OK);
  VARIANT args[3] = {};  // last first: a number of any width, a number as a flag, text as a number
  args[0].vt = VT_R8;
  args[0].dblVal = 7'050'000.0;
  args[1].vt = VT_I4;
  args[1].lVal = 1;
  Variant index(Text("2"));
  args[2] = index;
  DISPPARAMS parameters{args, nullptr, 3, 0};
  const auto invoke = [&] {
    return object->Invoke(id, IID_NULL, LOCALE_USER_DEFAULT, DISPATCH_METHOD, &parameters, nullptr,
                          nullptr, nullptr);
  };
  EXPECT_EQ(invoke(), S_OK);
  EXPECT_EQ(object->fake.last, callText("SetRxFrequency", Index(2), true, 7'050'000));
  parameters.cArgs = 2;
  EXPECT_EQ(invoke(), DISP_E_BADPARAMCOUNT);
  id = 999;
  EXPECT_EQ(invoke(), DISP_E_MEMBERNOTFOUND);
}

TEST_F(ComFace, IsOneObjectBehindAllItsInterfacesAndSaysWhatItIs) {
  bool ended = false;
  ComPtr<ISondrel> object(new FakeSondrel(&ended));
  const auto identity = com::queryFor<IUnknown>(object.get());
  const auto classInfo = com::queryFor<IProvideClassInfo2>(object.get());
  ASSERT_TRUE(classInfo);
  for (const IID& iid : {IID_IDispatch, IID_IProvideClassInfo, IID_ISupportErrorInfo,
                         IID_IConnectionPointContainer, __uuidof(ISondrel)}) {
    const auto other = com::queryFor<IUnknown>(object.get(), iid);
    ASSERT_TRUE(other);
    EXPECT_EQ(com::queryFor<IUnknown>(other.get()).get(), identity.get());
  }
  EXPECT_FALSE(com::queryFor<IUnknown>(object.get(), __uuidof(IAmbrel)));
  GUID events{};
  EXPECT_EQ(classInfo->GetGUID(GUIDKIND_DEFAULT_SOURCE_DISP_IID, &events), S_OK);
  EXPECT_TRUE(events == __uuidof(_ISondrelEvents));
  ComPtr<ITypeInfo> info;
  EXPECT_EQ(classInfo->GetClassInfo(info.receive()), S_OK);
  EXPECT_EQ(object->GetTypeInfo(0, LOCALE_USER_DEFAULT, info.receive()), S_OK);
  EXPECT_EQ(object->GetTypeInfo(1, LOCALE_USER_DEFAULT, info.receive()), DISP_E_BADINDEX);
  object = {};
  EXPECT_FALSE(ended);
}

}  // namespace kelvane::test
