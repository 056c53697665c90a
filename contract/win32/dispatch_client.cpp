#include "contract/win32/dispatch_client.h"

#include <algorithm>

#include "base/win32/utf16.h"

namespace kelvane::com {

namespace {

/// Longest argument list that the contract's tables hold, and a little more.
constexpr std::size_t kMostArguments = 10;

Outcome outcomeOf(HRESULT code) {
  if (SUCCEEDED(code)) return Outcome::Done;
  const bool lacking = code == DISP_E_MEMBERNOTFOUND || code == E_NOTIMPL;
  return lacking ? Outcome::Unsupported : Outcome::Failed;
}

/// What an operation that raised an error said of it.
class Fault : public EXCEPINFO {
 public:
  Fault() : EXCEPINFO{} {}
  Fault(const Fault&) = delete;
  Fault& operator=(const Fault&) = delete;
  ~Fault() {
    SysFreeString(bstrSource);
    SysFreeString(bstrDescription);
    SysFreeString(bstrHelpFile);
  }
};

}  // namespace

DispatchClient::DispatchClient(ComPtr<IDispatch> component, std::span<const std::string_view> names)
    : component_(std::move(component)), names_(names), ids_(names.size()) {}

Outcome DispatchClient::invoke(std::size_t operation, std::span<Variant> args, VARIANT* result) {
  const std::optional<DISPID> id = idOf(operation);
  if (!id) return Outcome::Failed;
  if (*id == DISPID_UNKNOWN) return Outcome::Unsupported;
  // A call takes its arguments last first. The copies own nothing: `args` frees.
  std::array<VARIANT, kMostArguments> reversed;
  if (args.size() > reversed.size()) return Outcome::Failed;
  std::reverse_copy(args.begin(), args.end(), reversed.begin());
  DISPPARAMS parameters{reversed.data(), nullptr, static_cast<UINT>(args.size()), 0};
  Fault fault;
  const HRESULT code = component_->Invoke(*id, IID_NULL, LOCALE_USER_DEFAULT, DISPATCH_METHOD,
                                          &parameters, result, &fault, nullptr);
  return outcomeOf(code == DISP_E_EXCEPTION && FAILED(fault.scode) ? fault.scode : code);
}

std::optional<DISPID> DispatchClient::idOf(std::size_t operation) {
  std::optional<DISPID>& id = ids_[operation];
  if (id) return id;
  std::wstring name = wide(names_[operation]);
  LPOLESTR names[] = {name.data()};
  DISPID found = DISPID_UNKNOWN;
  const HRESULT code = component_->GetIDsOfNames(IID_NULL, names, 1, LOCALE_USER_DEFAULT, &found);
  if (SUCCEEDED(code)) {
    id = found;
  } else if (code == DISP_E_UNKNOWNNAME) {
    id = DISPID_UNKNOWN;
  }
  return id;
}

}  // namespace kelvane::com
