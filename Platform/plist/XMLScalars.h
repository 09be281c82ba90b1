#pragma once

#include <optional>
#include <string_view>

#include "Platform/PropertyList.h"

/// Reads the simple values of XML property lists from the text between their tags. Each function returns
/// nothing if the text is wrong.
namespace quarn::XMLScalars {

/// Reads a decimal number, or a hexadecimal one after "0x", with an optional sign and leading white space.
std::optional<PropertyList::Integer> integer(std::string_view text);
/// Reads a number, or "nan", "inf" or "infinity" in any letter case, with an optional sign and leading white
/// space.
std::optional<double> real(std::string_view text);
/// Reads exactly the form "2026-11-21T23:16:15Z". The fields aren't range-checked: 30 February becomes 2
/// March.
std::optional<PropertyList::Date> date(std::string_view text);
/// Reads base64 and ignores other ASCII characters.
std::optional<PropertyList::Data> data(std::string_view text);
/// Returns the whole part of a number, or 0 if that isn't a valid UID.
PropertyList::UID uid(double number);

}  // namespace quarn::XMLScalars
