#include "Platform/Json.h"

#include <algorithm>
#include <cmath>

namespace quarn {

/// Stores whole numbers as integers, so that 5.0 equals 5. Two kinds of number stay doubles because their
/// text differs: those beyond 2^53, and minus zero.
Json::Json(double value) : value_(value) {
  constexpr double limit = 9007199254740992.0;
  const bool isMinusZero = value == 0 && std::signbit(value);
  if (std::abs(value) <= limit && std::trunc(value) == value && !isMinusZero)
    value_ = static_cast<std::int64_t>(value);
}

std::optional<std::int64_t> Json::integer() const {
  if (const auto* whole = std::get_if<std::int64_t>(&value_)) return *whole;
  const auto* number = std::get_if<double>(&value_);
  // 2^63 is the first double above the range. -2^63 is inside the range but is refused too: smaller numbers
  // may have been rounded to it when they were read.
  constexpr double limit = 9223372036854775808.0;
  if (!number || *number <= -limit || *number >= limit || std::trunc(*number) != *number) return std::nullopt;
  return static_cast<std::int64_t>(*number);
}

std::optional<double> Json::number() const {
  if (const auto* whole = std::get_if<std::int64_t>(&value_)) return static_cast<double>(*whole);
  const auto* fraction = std::get_if<double>(&value_);
  return fraction ? std::optional(*fraction) : std::nullopt;
}

const Json* Json::member(std::string_view key) const {
  if (!object()) return nullptr;
  const auto found = std::find_if(object()->begin(), object()->end(),
                                  [&](const auto& member) { return member.first == key; });
  return found != object()->end() && !found->second.isNull() ? &found->second : nullptr;
}

}  // namespace quarn
