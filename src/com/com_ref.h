#pragma once
// An owned reference to a COM interface: released when dropped.

#include <unknwn.h>

#include <utility>

namespace sheafwork::com {

template <typename T>
class ComRef {
 public:
  ComRef() = default;
  /// Takes over a reference the caller already holds (an out-parameter's).
  static ComRef Adopt(T* p) {
    ComRef r;
    r.p_ = p;
    return r;
  }
  /// Adds a reference of its own to `p`.
  static ComRef Share(T* p) {
    if (p != nullptr) p->AddRef();
    return Adopt(p);
  }
  ComRef(const ComRef& other) : p_(other.p_) {
    if (p_ != nullptr) p_->AddRef();
  }
  ComRef(ComRef&& other) noexcept : p_(std::exchange(other.p_, nullptr)) {}
  ComRef& operator=(ComRef other) noexcept {
    std::swap(p_, other.p_);
    return *this;
  }
  ~ComRef() {
    if (p_ != nullptr) p_->Release();
  }

  T* get() const { return p_; }
  T* operator->() const { return p_; }
  explicit operator bool() const { return p_ != nullptr; }
  /// For a call that hands a new reference out; drops the one held before.
  T** Out() {
    *this = ComRef();
    return &p_;
  }

 private:
  T* p_ = nullptr;
};

}  // namespace sheafwork::com
