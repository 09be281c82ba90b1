#pragma once

#include <array>
#include <cstddef>
#include <optional>
#include <string_view>
#include <utility>

namespace quarn {

/// A case of an enumeration and its text in files and reports.
template <class Enum>
struct RawValueRow {
  Enum value;
  std::string_view rawValue;
};

/// The table of an enumeration: one row per case, in their order. It stands right below the enumeration. The
/// compiler checks that it is complete:
///
///     enum class RiskLevel { low, medium, high };
///
///     template <>
///     inline constexpr auto rawValueRows<RiskLevel> = std::to_array<RawValueRow<RiskLevel>>({
///         {RiskLevel::low, "low"},
///         {RiskLevel::medium, "medium"},
///         {RiskLevel::high, "high"},
///     });
///
/// A table with more columns has rows of its own struct, whose first members are `value` and `rawValue`.
template <class Enum>
inline constexpr std::nullptr_t rawValueRows = nullptr;

template <class Enum>
concept HasRawValues = requires {
  rawValueRows<Enum>.size();
};

namespace RawValues {

/// Returns whether a number is that of a case. The compiler writes the value as "= quarn::RiskLevel::low]" if
/// it is, and as "= (quarn::RiskLevel)3]" if it isn't.
template <auto value>
constexpr bool isCase() {
  const std::string_view signature = __PRETTY_FUNCTION__;
  const auto text = signature.substr(signature.rfind(')') + 1);
  return text.find_first_not_of("-0123456789]") != std::string_view::npos;
}

template <class Enum, std::size_t... i>
constexpr bool isAnyCase(std::index_sequence<i...>) {
  const bool areCases[] = {isCase<static_cast<Enum>(rawValueRows<Enum>.size() + i)>()...};
  for (const bool isOne : areCases) {
    if (isOne) return true;
  }
  return false;
}

/// Returns whether every case has a row. Looks for further cases up to the number 255.
template <class Enum>
constexpr bool coverAllCases() {
  return !isAnyCase<Enum>(std::make_index_sequence<256 - rawValueRows<Enum>.size()>());
}

template <class Enum>
constexpr bool areInOrder() {
  for (std::size_t i = 0; i < rawValueRows<Enum>.size(); ++i) {
    if (rawValueRows<Enum>[i].value != static_cast<Enum>(i)) return false;
  }
  return true;
}

template <class Enum>
constexpr bool areDistinct() {
  for (const auto& one : rawValueRows<Enum>) {
    for (const auto& other : rawValueRows<Enum>) {
      if (one.value != other.value && one.rawValue == other.rawValue) return false;
    }
  }
  return true;
}

}  // namespace RawValues

/// Returns the table after checking that it is complete.
template <HasRawValues Enum>
constexpr const auto& checkedRows() {
  static_assert(RawValues::areInOrder<Enum>(),
                "The rows stand in the order of the cases, from the first on.");
  static_assert(RawValues::coverAllCases<Enum>(), "A case has no row.");
  static_assert(RawValues::areDistinct<Enum>(), "Two cases have the same text.");
  return rawValueRows<Enum>;
}

/// Returns the whole row of a case, for the columns beyond the text.
template <HasRawValues Enum>
constexpr const auto& rowOf(Enum value) {
  return checkedRows<Enum>()[static_cast<std::size_t>(value)];
}

template <HasRawValues Enum>
constexpr std::string_view rawValue(Enum value) {
  return rowOf(value).rawValue;
}

/// Returns the case with exactly this text, or nothing for any other text.
template <HasRawValues Enum>
constexpr std::optional<Enum> fromRawValue(std::string_view text) {
  for (const auto& row : checkedRows<Enum>()) {
    if (row.rawValue == text) return row.value;
  }
  return std::nullopt;
}

/// Returns all cases in their order.
template <HasRawValues Enum>
constexpr auto allCases() {
  std::array<Enum, rawValueRows<Enum>.size()> cases{};
  for (const auto& row : checkedRows<Enum>()) cases[static_cast<std::size_t>(row.value)] = row.value;
  return cases;
}

}  // namespace quarn
