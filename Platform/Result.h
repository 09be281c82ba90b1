#pragma once

#include <optional>
#include <utility>
#include <variant>

#include "Platform/PlatformError.h"

namespace quarn {

/// The outcome of an operation at the border: a value, or the error that prevented it. Code that changes
/// things says `.orThrow()`, code that only looks says `.valueOr(…)`. So each call shows whether it can
/// throw.
template <class Value>
class [[nodiscard]] Result {
 public:
  Result(Value value) : outcome_(std::in_place_index<0>, std::move(value)) {}
  Result(PlatformError error) : outcome_(std::in_place_index<1>, std::move(error)) {}

  bool succeeded() const { return outcome_.index() == 0; }
  explicit operator bool() const { return succeeded(); }

  /// Only after `succeeded()` has returned true.
  const Value& operator*() const& { return std::get<0>(outcome_); }
  Value&& operator*() && { return std::get<0>(std::move(outcome_)); }
  const Value* operator->() const { return &std::get<0>(outcome_); }

  /// Only after `succeeded()` has returned false.
  const PlatformError& error() const { return std::get<1>(outcome_); }

  Value orThrow() && {
    if (!succeeded()) throw std::get<1>(std::move(outcome_));
    return std::get<0>(std::move(outcome_));
  }
  Value valueOr(Value fallback) && {
    return succeeded() ? std::get<0>(std::move(outcome_)) : std::move(fallback);
  }
  std::optional<Value> asOptional() && {
    if (!succeeded()) return std::nullopt;
    return std::get<0>(std::move(outcome_));
  }
  /// Ignores a failure, and shows at the call that this is deliberate.
  void orIgnore() const {}

 private:
  std::variant<Value, PlatformError> outcome_;
};

/// The outcome of an operation that returns no value.
template <>
class [[nodiscard]] Result<void> {
 public:
  Result() = default;
  Result(PlatformError error) : error_(std::move(error)) {}

  bool succeeded() const { return !error_; }
  explicit operator bool() const { return succeeded(); }
  const PlatformError& error() const { return *error_; }
  void orThrow() const {
    if (error_) throw *error_;
  }
  /// Ignores a failure, and shows at the call that this is deliberate.
  void orIgnore() const {}

 private:
  std::optional<PlatformError> error_;
};

}  // namespace quarn
