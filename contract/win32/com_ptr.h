#pragma once

#include <utility>

#include "contract/win32/com.h"

namespace kelvane::com {

/// Holds one reference to a COM object and gives it back.
template <class Interface>
class ComPtr {
 public:
  ComPtr() = default;
  ComPtr(Interface* object) : object_(object) {  // NOLINT: a pointer is its pointer
    if (object_) object_->AddRef();
  }
  ComPtr(const ComPtr& other) : ComPtr(other.object_) {}
  ComPtr(ComPtr&& other) noexcept : object_(std::exchange(other.object_, nullptr)) {}
  ComPtr& operator=(ComPtr other) noexcept {
    std::swap(object_, other.object_);
    return *this;
  }
  ~ComPtr() {
    if (object_) object_->Release();
  }

  Interface* get() const { return object_; }
  Interface* operator->() const { return object_; }
  Interface& operator*() const { return *object_; }
  explicit operator bool() const { return object_ != nullptr; }

  /// Where a function may put a reference that it made for the caller; what was held is given back.
  Interface** receive() {
    *this = ComPtr();
    return &object_;
  }
  void** receiveAny() { return reinterpret_cast<void**>(receive()); }

  /// Hands the reference on to a caller who gives it back himself.
  Interface* detach() { return std::exchange(object_, nullptr); }

 private:
  Interface* object_ = nullptr;
};

/// Another interface of the object; none where it has no such interface.
template <class Wanted>
ComPtr<Wanted> queryFor(IUnknown* object, REFIID iid = __uuidof(Wanted)) {
  ComPtr<Wanted> answer;
  if (object) object->QueryInterface(iid, answer.receiveAny());
  return answer;
}

}  // namespace kelvane::com
