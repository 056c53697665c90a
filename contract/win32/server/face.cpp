#include "contract/win32/server/face.h"

#include "base/barrier.h"
#include "base/win32/utf16.h"
#include "contract/win32/com.h"
#include "contract/win32/com_ptr.h"

namespace kelvane::com::face {

namespace {

HRESULT explained(HRESULT code, const char* operation, const char* why) noexcept {
  try {
    ComPtr<ICreateErrorInfo> words;
    if (FAILED(CreateErrorInfo(words.receive()))) return code;
    std::wstring text = wide(std::string(operation) + ": " + why);
    words->SetDescription(text.data());
    std::wstring source = L"Kelvane";
    words->SetSource(source.data());
    if (const auto info = queryFor<IErrorInfo>(words.get())) SetErrorInfo(0, info.get());
  } catch (const std::bad_alloc&) {
    // The code itself still tells of the failure.
  }
  return code;
}

}  // namespace

HRESULT finished(Outcome outcome, const char* operation) noexcept {
  switch (outcome) {
    case Outcome::Done:
      return S_OK;
    case Outcome::Unsupported:
      return explained(E_NOTIMPL, operation, "the component does not have this operation");
    case Outcome::Failed:
      break;
  }
  return explained(E_FAIL, operation, "refused, or there is no receiver of this index");
}

HRESULT finishedBy(const char* operation, std::exception_ptr thrown) noexcept {
  try {
    std::rethrow_exception(thrown);
  } catch (const std::bad_alloc&) {
    noteFault(operation, thrownWords());
    return E_OUTOFMEMORY;
  } catch (const std::exception& error) {
    noteFault(operation, thrownWords());
    return explained(E_UNEXPECTED, operation, error.what());
  } catch (...) {
    noteFault(operation, thrownWords());
    return explained(E_UNEXPECTED, operation, "an error of an unknown kind");
  }
}

}  // namespace kelvane::com::face
