#include "Platform/ByteCount.h"

namespace quarn::ByteCount {

namespace {

/// A unit and the precision it is written with: whole KB, tenths of MB, hundredths of GB.
struct Unit {
  const char* name;
  std::uint64_t bytesPerStep;
  std::uint64_t stepsPerUnit;
};

constexpr Unit kilobytes{"KB", 1'000, 1};
constexpr Unit megabytes{"MB", 100'000, 10};
constexpr Unit gigabytes{"GB", 10'000'000, 100};

/// Rounds halves away from zero. Integer arithmetic keeps this exact for every 64-bit number.
std::uint64_t steps(std::uint64_t bytes, const Unit& unit) {
  return (bytes + unit.bytesPerStep / 2) / unit.bytesPerStep;
}

std::string groupedByThrees(std::uint64_t number) {
  auto digits = std::to_string(number);
  for (auto end = digits.size(); end > 3; end -= 3) digits.insert(end - 3, ",");
  return digits;
}

/// Drops trailing zeros, and the point if no digit follows it.
std::string decimals(std::uint64_t fraction, std::uint64_t stepsPerUnit) {
  std::string digits;
  for (auto step = stepsPerUnit / 10; fraction > 0; step /= 10) {
    digits += std::to_string(fraction / step);
    fraction %= step;
  }
  return digits.empty() ? digits : "." + digits;
}

/// Returns the first unit that shows less than a thousand after rounding. GB is the last unit and shows any
/// number.
const Unit& unitFor(std::uint64_t bytes) {
  for (const auto* unit : {&kilobytes, &megabytes}) {
    if (steps(bytes, *unit) < 1000 * unit->stepsPerUnit) return *unit;
  }
  return gigabytes;
}

}  // namespace

std::string text(std::int64_t bytes) {
  if (bytes == 0) return "Zero KB";
  // Negated as an unsigned number, because the lowest signed number has no positive counterpart.
  const auto magnitude =
      bytes < 0 ? 0 - static_cast<std::uint64_t>(bytes) : static_cast<std::uint64_t>(bytes);
  const auto& unit = unitFor(magnitude);
  const auto count = steps(magnitude, unit);
  return (bytes < 0 ? "-" : "") + groupedByThrees(count / unit.stepsPerUnit) +
         decimals(count % unit.stepsPerUnit, unit.stepsPerUnit) + " " + unit.name;
}

}  // namespace quarn::ByteCount
