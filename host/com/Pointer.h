// A counted reference to a COM interface.
#pragma once

#include <utility>

#include "host/com/Ole.h"

namespace kvo::com {

template <class T>
class Pointer {
 public:
  Pointer() = default;
  // Adds a reference.
  explicit Pointer(T* object) : object_(object) {
    if (object_ != nullptr) object_->AddRef();
  }
  Pointer(const Pointer& other) : Pointer(other.object_) {}
  Pointer(Pointer&& other) noexcept : object_(std::exchange(other.object_, nullptr)) {}
  Pointer& operator=(Pointer other) noexcept {
    std::swap(object_, other.object_);
    return *this;
  }
  ~Pointer() {
    if (object_ != nullptr) object_->Release();
  }

  // Takes ownership of the caller's reference.
  static Pointer Attach(T* object) {
    Pointer pointer;
    pointer.object_ = object;
    return pointer;
  }
  // Queries an object for this interface; null when it has none, or when there is no object.
  template <class Other>
  static Pointer Query(Other* object) {
    Pointer pointer;
    if (object != nullptr)
      object->QueryInterface(__uuidof(T), reinterpret_cast<void**>(&pointer.object_));
    return pointer;
  }

  T* get() const { return object_; }
  T* operator->() const { return object_; }
  explicit operator bool() const { return object_ != nullptr; }
  // Transfers the reference to the caller.
  T* Detach() { return std::exchange(object_, nullptr); }
  // An out parameter for functions that return a reference. Releases the current one.
  T** Receive() {
    *this = {};
    return &object_;
  }

 private:
  T* object_ = nullptr;
};

}  // namespace kvo::com
