#pragma once

#include <optional>
#include <string_view>

#include "Platform/PropertyList.h"

/// The plain values of XML property lists, from the text between their tags; nothing for a wrong one.
namespace quarn::XMLScalars {

/// Decimal, or hexadecimal behind "0x", with a sign; blanks may stand in front.
std::optional<PropertyList::Integer> integer(std::string_view text);
/// Also "nan", "inf" and "infinity" in any letter case, with a sign; blanks may stand in front.
std::optional<double> real(std::string_view text);
/// "2026-11-21T23:16:15Z" to the letter. The fields have no bounds: 30 February is 2 March.
std::optional<PropertyList::Date> date(std::string_view text);
/// Base64; other ASCII is passed over.
std::optional<PropertyList::Data> data(std::string_view text);
/// The whole part of a number; 0 for one that no UID can be.
PropertyList::UID uid(double number);

}  // namespace quarn::XMLScalars
