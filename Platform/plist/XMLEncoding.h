#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace quarn::XMLEncoding {

/// The text of an XML file, less its byte-order mark: in the encoding that the mark tells (UTF-8, -16,
/// -32), else in the declared one (UTF-8, US-ASCII, ISO-8859-1), else in UTF-8. Nothing if the encoding is
/// another one or a byte doesn't belong to it. UTF-8 is handed on as it is, right or wrong.
std::optional<std::string> decoded(std::string_view bytes);

/// UTF-16, the higher byte first. Nothing if half of a character is missing.
std::optional<std::string> decodedUTF16(std::string_view bytes);

}  // namespace quarn::XMLEncoding
