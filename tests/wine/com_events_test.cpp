// The components' events, from the source to a listener.
#include "contract/win32/event_connection.h"
#include "contract/win32/event_sink.h"
#include "tests/wine/fake_components.h"

namespace kelvane::test {

namespace {

using com::ComPtr;
using com::EventConnection;
using com::Variant;

template <class Listener, class... Params>
std::string raise(Listener& source, const char* name, void (Listener::*event)(Params...)) {
  const auto args = distinctArguments<Params...>(0);
  return std::apply(
      [&](const auto&... a) {
        (source.*event)(a...);
        return callText(name, a...);
      },
      args);
}

/// A sink as a script language makes it: late bound, and it keeps what it was called with.
class RawSink final : public IDispatch {
 public:
  STDMETHODIMP QueryInterface(REFIID iid, void** object) override {
    *object = iid == IID_IUnknown || iid == IID_IDispatch ? this : nullptr;
    if (*object) AddRef();
    return *object ? S_OK : E_NOINTERFACE;
  }
  STDMETHODIMP_(ULONG) AddRef() override { return ++references; }
  STDMETHODIMP_(ULONG) Release() override { return --references; }
  STDMETHODIMP GetTypeInfoCount(UINT*) override { return E_NOTIMPL; }
  STDMETHODIMP GetTypeInfo(UINT, LCID, ITypeInfo**) override { return E_NOTIMPL; }
  STDMETHODIMP GetIDsOfNames(REFIID, LPOLESTR*, UINT, LCID, DISPID*) override { return E_NOTIMPL; }
  STDMETHODIMP Invoke(DISPID id, REFIID, LCID, WORD, DISPPARAMS* parameters, VARIANT*, EXCEPINFO*,
                      UINT*) override {
    ids.push_back(id);
    types.clear();
    for (UINT i = 0; i < parameters->cArgs; ++i) types.push_back(parameters->rgvarg[i].vt);
    if (parameters->cArgs > 0) last = com::valueOf<Long>(parameters->rgvarg[0]).value_or(0);
    return E_FAIL;  // what a sink makes of an event is its own affair
  }

  ULONG references = 0;
  std::vector<DISPID> ids;
  std::vector<VARTYPE> types;
  Long last = 0;
};

ComPtr<IConnectionPoint> pointOf(IUnknown* object, REFIID events = __uuidof(_ISondrelEvents)) {
  ComPtr<IConnectionPoint> point;
  com::queryFor<IConnectionPointContainer>(object)->FindConnectionPoint(events, point.receive());
  return point;
}

template <class Object>
ComPtr<IUnknown> unknown(Object& object) {
  return com::queryFor<IUnknown>(static_cast<IDispatch*>(&object));
}

}  // namespace

class ComEvents : public ComTest {
 protected:
  ComPtr<FakeSondrel> sondrel{new FakeSondrel};
  ReceiverListener& source = sondrel->listener();
  HeardReceivers heard;
};

TEST_F(ComEvents, ArriveInTheirOrderWithTheirArgumentsInPlace) {
  const ComPtr<FakeAmbrel> ambrel(new FakeAmbrel);
  HeardFrequencies frequencies;
  const EventConnection first(unknown(*sondrel).get(), heard);
  const EventConnection second(unknown(*ambrel).get(), frequencies);
  ASSERT_TRUE(first.connected());
  ASSERT_TRUE(second.connected());
  std::vector<std::string> expected;
#define EVENT(name, params, args) expected.push_back(raise(source, #name, &ReceiverListener::name));
#include "contract/sondrel_events.inc"
#undef EVENT
  EXPECT_EQ(heard.events, expected);
  expected.clear();
#define EVENT(name, params, args) \
  expected.push_back(raise(ambrel->listener(), #name, &FrequencyListener::name));
#include "contract/ambrel_events.inc"
#undef EVENT
  EXPECT_EQ(frequencies.events, expected);
}

TEST_F(ComEvents, ReachASinkThatKnowsNothingButIDispatchLastArgumentFirst) {
  RawSink sink;
  DWORD cookie = 0;
  ASSERT_EQ(pointOf(unknown(*sondrel).get())->Advise(&sink, &cookie), S_OK);
  const EventConnection other(unknown(*sondrel).get(), heard);
  source.RxSMtUpdated(3, 500, -6, -79, "S8");
  EXPECT_EQ(sink.types, (std::vector<VARTYPE>{VT_BSTR, VT_I4, VT_I4, VT_I4, VT_I2}));
  source.RxFrqUpdated(3, 7'050'000, 1);
  EXPECT_EQ(sink.last, 1);
  EXPECT_EQ(sink.ids, (std::vector<DISPID>{12, 5}));
  EXPECT_EQ(heard.events.size(), 2u) << "a failing sink keeps nothing from the others";
  EXPECT_EQ(pointOf(unknown(*sondrel).get())->Unadvise(cookie), S_OK);
  EXPECT_EQ(pointOf(unknown(*sondrel).get())->Unadvise(cookie), CONNECT_E_NOCONNECTION);
  EXPECT_EQ(sink.references, 0u);
}

TEST_F(ComEvents, ASinkMayDisconnectItselfOrAnotherInItsHandler) {
  HeardReceivers second, third;
  auto first = std::make_unique<EventConnection>(unknown(*sondrel).get(), heard);
  auto other = std::make_unique<EventConnection>(unknown(*sondrel).get(), second);
  const EventConnection last(unknown(*sondrel).get(), third);
  heard.then = [&] {
    first.reset();
    other.reset();
  };
  source.DrvUpdated(4);
  source.DrvUpdated(3);
  EXPECT_EQ(heard.events.size(), 1u);
  EXPECT_EQ(second.events.size(), 0u) << "disconnected before its turn";
  EXPECT_EQ(third.events.size(), 2u);
}

TEST_F(ComEvents, ASinkMayGiveBackTheLastReferenceInItsHandler) {
  bool ended = false;
  ComPtr<FakeSondrel> object(new FakeSondrel(&ended));
  EventConnection connection(unknown(*object).get(), heard);
  HeardReceivers second;
  EventConnection other(unknown(*object).get(), second);
  ReceiverListener& raised = object->listener();
  heard.then = [&] {
    connection = {};
    object = {};
    other = {};
    EXPECT_FALSE(ended) << "it is still raising";
  };
  raised.DrvUpdated(4);
  EXPECT_TRUE(ended);
  EXPECT_EQ(heard.events.size(), 1u);
}

TEST_F(ComEvents, ASinkMayConnectAnotherInItsHandler) {
  HeardReceivers second;
  std::vector<EventConnection> more;
  const EventConnection first(unknown(*sondrel).get(), heard);
  heard.then = [&] {
    for (int i = 0; i < 100; ++i) more.emplace_back(unknown(*sondrel).get(), second);
    heard.then = nullptr;
  };
  source.DrvUpdated(4);
  EXPECT_EQ(second.events.size(), 0u) << "connected after the event was raised";
  source.DrvUpdated(3);
  EXPECT_EQ(second.events.size(), 100u);
}

TEST_F(ComEvents, AListenersErrorStaysWithIt) {
  HeardReceivers second;
  const EventConnection first(unknown(*sondrel).get(), heard);
  const EventConnection other(unknown(*sondrel).get(), second);
  heard.then = [] { throw std::runtime_error("clumsy"); };
  source.DrvUpdated(4);
  EXPECT_EQ(second.events.size(), 1u);
}

TEST_F(ComEvents, WhatIsNotInTheContractIsDropped) {
  const ComPtr<IDispatch> sink(com::newSink(heard));
  const auto invoke = [&](DISPID event, std::vector<VARIANT> args) {
    DISPPARAMS parameters{args.data(), nullptr, static_cast<UINT>(args.size()), 0};
    return sink->Invoke(event, IID_NULL, LOCALE_USER_DEFAULT, DISPATCH_METHOD, &parameters, nullptr,
                        nullptr, nullptr);
  };
  const Variant rx(Index(2)), step(Long(10)), text(Text("12")), huge(Long(70'000));
  VARIANT nothing{}, wide{};
  wide.vt = VT_R8;
  wide.dblVal = 25.0;
  const DISPID stepUpdated = 15;
  EXPECT_HRESULT_FAILED(invoke(0, {step, rx}));
  EXPECT_HRESULT_FAILED(invoke(1000, {step, rx}));
  EXPECT_HRESULT_FAILED(invoke(-5, {step, rx}));
  EXPECT_HRESULT_FAILED(invoke(stepUpdated, {rx}));
  EXPECT_HRESULT_FAILED(invoke(stepUpdated, {step, step, rx}));
  EXPECT_HRESULT_FAILED(invoke(stepUpdated, {text, rx}));
  EXPECT_HRESULT_FAILED(invoke(stepUpdated, {nothing, rx}));
  EXPECT_HRESULT_FAILED(invoke(stepUpdated, {step, huge}));
  EXPECT_EQ(sink->Invoke(stepUpdated, IID_NULL, 0, 0, nullptr, nullptr, nullptr, nullptr),
            E_POINTER);
  EXPECT_TRUE(heard.events.empty());
  EXPECT_HRESULT_SUCCEEDED(invoke(stepUpdated, {wide, step}));  // numbers of other widths will do
  EXPECT_EQ(heard.events, (std::vector<std::string>{callText("RxStpUpdated", Index(10), 25)}));
}

TEST_F(ComEvents, AConnectionToWhatHasNoSuchEventsIsNone) {
  EXPECT_FALSE(EventConnection().connected());
  EXPECT_FALSE(EventConnection(nullptr, heard).connected());
  const ComPtr<FakeAmbrel> ambrel(new FakeAmbrel);
  EXPECT_FALSE(EventConnection(unknown(*ambrel).get(), heard).connected());
}

TEST_F(ComEvents, TheConnectionPointTellsWhatItIsAndWhoIsConnected) {
  const auto container = com::queryFor<IConnectionPointContainer>(unknown(*sondrel).get());
  ComPtr<IEnumConnectionPoints> points;
  ASSERT_EQ(container->EnumConnectionPoints(points.receive()), S_OK);
  ComPtr<IConnectionPoint> point;
  EXPECT_EQ(points->Next(1, point.receive(), nullptr), S_OK);
  ASSERT_TRUE(point);
  IConnectionPoint* further = nullptr;
  EXPECT_EQ(points->Next(1, &further, nullptr), S_FALSE);
  EXPECT_EQ(points->Reset(), S_OK);
  EXPECT_EQ(points->Skip(1), S_OK);
  IID events{};
  EXPECT_EQ(point->GetConnectionInterface(&events), S_OK);
  EXPECT_TRUE(events == __uuidof(_ISondrelEvents));
  ComPtr<IConnectionPointContainer> back;
  EXPECT_EQ(point->GetConnectionPointContainer(back.receive()), S_OK);
  EXPECT_EQ(back.get(), container.get());

  const EventConnection connection(unknown(*sondrel).get(), heard);
  ComPtr<IEnumConnections> connections;
  ASSERT_EQ(point->EnumConnections(connections.receive()), S_OK);
  CONNECTDATA data[2] = {};
  ULONG fetched = 0;
  EXPECT_EQ(connections->Next(2, data, &fetched), S_FALSE);
  ASSERT_EQ(fetched, 1u);
  EXPECT_NE(data[0].dwCookie, 0u);
  data[0].pUnk->Release();
  DWORD cookie = 0;
  EXPECT_EQ(point->Advise(nullptr, &cookie), E_POINTER);
  EXPECT_EQ(point->Unadvise(77), CONNECT_E_NOCONNECTION);
}

}  // namespace kelvane::test
