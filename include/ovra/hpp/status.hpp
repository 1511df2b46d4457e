// SPDX-License-Identifier: MIT
// Results of the C++ interface: a status that must be looked at, and a value or a status.
#ifndef OVRA_HPP_STATUS_HPP
#define OVRA_HPP_STATUS_HPP

#include <cstdlib>
#include <optional>
#include <utility>

#include "ovra/status.h"

#if defined(__cpp_exceptions)
#include <stdexcept>
#endif

namespace ovra {

// What a call answers: a code of ovra/status.h, or kMismatch.
class [[nodiscard]] Status {
 public:
  // The views of one call do not belong together: their formats or sizes differ where they must not.
  // Nothing was called.
  static constexpr OvraStatus kMismatch = -1;

  constexpr Status() = default;
  constexpr Status(OvraStatus code) : code_(code) {}

  constexpr bool ok() const { return code_ == OVRA_OK; }
  constexpr explicit operator bool() const { return ok(); }
  constexpr OvraStatus code() const { return code_; }
  const char* text() const {
    return code_ == kMismatch ? "images of one call do not belong together" : OvraStatusText(code_);
  }
  // Throws Error unless the status is OK; ends the program where exceptions are off.
  void OrThrow() const;

 private:
  OvraStatus code_ = OVRA_OK;
};

#if defined(__cpp_exceptions)
class Error : public std::runtime_error {
 public:
  explicit Error(Status status) : std::runtime_error(status.text()), status_(status) {}
  Status status() const { return status_; }

 private:
  Status status_;
};
#endif

inline void Status::OrThrow() const {
  if (ok()) return;
#if defined(__cpp_exceptions)
  throw Error(*this);
#else
  std::abort();
#endif
}

// A value, or the status that tells why there is none.
template <class T>
class [[nodiscard]] Result {
 public:
  Result(T value) : value_(std::move(value)) {}
  Result(Status failure) : status_(failure) {}

  bool ok() const { return value_.has_value(); }
  explicit operator bool() const { return ok(); }
  Status status() const { return status_; }

  // Only where there is a value.
  T& operator*() & { return *value_; }
  const T& operator*() const& { return *value_; }
  T* operator->() { return &*value_; }
  const T* operator->() const { return &*value_; }

  // The value; without one as Status::OrThrow.
  T& value() & {
    status_.OrThrow();
    return *value_;
  }
  T value() && {
    status_.OrThrow();
    return std::move(*value_);
  }

 private:
  std::optional<T> value_;
  Status status_;
};

}  // namespace ovra

#endif  // OVRA_HPP_STATUS_HPP
