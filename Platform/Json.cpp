#include "Platform/Json.h"

#include <cmath>

namespace quarn {

std::optional<std::int64_t> Json::integer() const {
  if (const auto* whole = std::get_if<std::int64_t>(&value_)) return *whole;
  const auto* number = std::get_if<double>(&value_);
  // 2 to the 63rd is the first double beyond the range; its negative is still within.
  constexpr double limit = 9223372036854775808.0;
  if (!number || *number < -limit || *number >= limit || std::trunc(*number) != *number) return std::nullopt;
  return static_cast<std::int64_t>(*number);
}

const Json* Json::member(const std::string& key) const {
  const auto* object = std::get_if<Object>(&value_);
  if (!object) return nullptr;
  const auto found = object->find(key);
  const bool isThere =
      found != object->end() && !std::holds_alternative<std::monostate>(found->second.value_);
  return isThere ? &found->second : nullptr;
}

}  // namespace quarn
