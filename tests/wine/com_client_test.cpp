// The panel's client over components that are not ours, or not whole.
#include <map>

#include "contract/win32/com_frequency.h"
#include "contract/win32/com_object.h"
#include "contract/win32/com_receiver.h"
#include "tests/wine/com_support.h"

namespace kelvane::test {

namespace {

using com::ComPtr;
using com::Variant;

/// A component that has a few operations, under numbers of its own.
class PartialComponent final : public com::ComObject<IDispatch> {
 public:
  using Operation = std::function<HRESULT(DISPPARAMS&, VARIANT*, EXCEPINFO*)>;

  explicit PartialComponent(std::map<std::wstring, Operation> operations)
      : operations_(std::move(operations)) {}

  STDMETHODIMP GetTypeInfoCount(UINT*) override { return E_NOTIMPL; }
  STDMETHODIMP GetTypeInfo(UINT, LCID, ITypeInfo**) override { return E_NOTIMPL; }
  STDMETHODIMP GetIDsOfNames(REFIID, LPOLESTR* names, UINT, LCID, DISPID* ids) override {
    ++lookUps;
    const auto found = operations_.find(names[0]);
    if (found == operations_.end()) return DISP_E_UNKNOWNNAME;
    *ids = 1000 + static_cast<DISPID>(std::distance(operations_.begin(), found));
    return S_OK;
  }
  STDMETHODIMP Invoke(DISPID id, REFIID, LCID, WORD, DISPPARAMS* parameters, VARIANT* result,
                      EXCEPINFO* fault, UINT*) override {
    return std::next(operations_.begin(), id - 1000)->second(*parameters, result, fault);
  }

  int lookUps = 0;

 private:
  const std::map<std::wstring, Operation> operations_;
};

PartialComponent::Operation answering(VARIANT value) {
  return [value](DISPPARAMS&, VARIANT* result, EXCEPINFO*) mutable {
    return VariantCopy(result, &value);
  };
}

VARIANT number(VARTYPE type, LONGLONG value) {
  VARIANT variant{};
  variant.vt = type;
  variant.llVal = value;
  return variant;
}

}  // namespace

class ComClient : public ComTest {};

TEST_F(ComClient, ServesWithWhatAComponentHasAndSaysWhatItLacks) {
  const ComPtr<PartialComponent> component(new PartialComponent({
      {L"GetRxCount", answering(number(VT_I2, 3))},
      {L"SetRxMode",
       [](DISPPARAMS& p, VARIANT*, EXCEPINFO*) { return p.cArgs == 2 ? S_OK : E_FAIL; }},
  }));
  com::ComReceiver client(component.get());
  EXPECT_EQ(client.GetRxCount().value(), 3);
  EXPECT_EQ(client.SetRxMode(1, 4), Outcome::Done);
  EXPECT_EQ(client.SetRxShown(1), Outcome::Unsupported);
  const Answer<Flag> has = client.HasRxHFFilter(0);
  EXPECT_EQ(has.outcome(), Outcome::Unsupported);
  EXPECT_EQ(has.value(), false);
  EXPECT_EQ(client.GetRxFrequency(0, kTuned).value(), -1);

  const int before = component->lookUps;
  client.GetRxCount();
  client.SetRxShown(2);
  EXPECT_EQ(component->lookUps, before) << "names are asked once, found or not";
}

TEST_F(ComClient, ReadsANumberOfAnyKindAndRefusesWhatIsNone) {
  const Variant text(Text("12"));
  const ComPtr<PartialComponent> component(new PartialComponent({
      {L"GetRxMode", answering(number(VT_I8, 5))},
      {L"IsRxOnline", answering(number(VT_I4, 1))},
      {L"GetRxRemote", answering(number(VT_I2, 0))},
      {L"GetRxFrqMax", answering(number(VT_I8, 5'000'000'000))},
      {L"GetRxAgc", answering(text)},
      {L"GetRxName", answering(number(VT_I4, 12))},
      {L"GetRxType", answering(text)},
      {L"GetRxBfo", [](DISPPARAMS&, VARIANT*, EXCEPINFO*) { return S_OK; }},
  }));
  com::ComReceiver client(component.get());
  EXPECT_EQ(client.GetRxMode(0).value(), 5);
  EXPECT_EQ(client.IsRxOnline(0).value(), true);
  EXPECT_EQ(client.GetRxRemote(0).value(), false);
  EXPECT_EQ(client.GetRxType(0).value(), "12");
  for (Outcome outcome : {client.GetRxFrqMax(0).outcome(), client.GetRxAgc(0).outcome(),
                          client.GetRxName(0).outcome(), client.GetRxBfo(0).outcome()}) {
    EXPECT_EQ(outcome, Outcome::Failed);
  }
  EXPECT_EQ(client.GetRxAgc(0).value(), -1);
}

TEST_F(ComClient, TellsARefusalFromAnOperationThatIsNotThere) {
  const auto raising = [](HRESULT code) -> PartialComponent::Operation {
    return [code](DISPPARAMS&, VARIANT*, EXCEPINFO* fault) {
      fault->scode = code;
      fault->bstrDescription = SysAllocString(L"as it happens");
      return DISP_E_EXCEPTION;
    };
  };
  const ComPtr<PartialComponent> component(new PartialComponent({
      {L"NextRxMode", raising(E_FAIL)},
      {L"NextRxAgc", raising(E_NOTIMPL)},
      {L"NextRxNBl", [](DISPPARAMS&, VARIANT*, EXCEPINFO*) { return DISP_E_MEMBERNOTFOUND; }},
      {L"NextRxAtt", [](DISPPARAMS&, VARIANT*, EXCEPINFO*) { return E_ACCESSDENIED; }},
  }));
  com::ComReceiver client(component.get());
  EXPECT_EQ(client.NextRxMode(0), Outcome::Failed);
  EXPECT_EQ(client.NextRxAgc(0), Outcome::Unsupported);
  EXPECT_EQ(client.NextRxNBl(0), Outcome::Unsupported);
  EXPECT_EQ(client.NextRxAtt(0), Outcome::Failed);
}

TEST_F(ComClient, WalksThroughAComponentThatWritesWhereItIsToldTo) {
  const ComPtr<PartialComponent> component(new PartialComponent({
      {L"NextFrqInSet",
       [](DISPPARAMS& p, VARIANT* result, EXCEPINFO*) {
         if (p.cArgs != 4 || p.rgvarg[3].lVal != 7 || p.rgvarg[2].lVal != kPrevious) return E_FAIL;
         *p.rgvarg[1].plVal = 4;
         *p.rgvarg[0].plVal = 9;
         *result = number(VT_I4, 9'400'000);
         return S_OK;
       }},
  }));
  com::ComFrequency client(component.get());
  EXPECT_EQ(client.NextFrqInSet(7, kPrevious).value(), (FrqRecord{4, 9, 9'400'000}));
  const Answer<FrqRecord> lacking = client.NextFrqKnown(kNext);
  EXPECT_EQ(lacking.outcome(), Outcome::Unsupported);
  EXPECT_EQ(lacking.value(), FrqRecord());
}

}  // namespace kelvane::test
