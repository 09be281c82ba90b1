#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace quarn::XMLEncoding {

/// Converts an XML file to UTF-8 and drops its byte-order mark. The encoding is that of the mark (UTF-8,
/// UTF-16 or UTF-32), else the declared one (UTF-8, US-ASCII or ISO-8859-1), else UTF-8. Returns nothing for
/// another encoding, or if a byte isn't valid in it. UTF-8 is returned unchecked.
std::optional<std::string> decoded(std::string_view bytes);

/// Converts big-endian UTF-16. Returns nothing if half of a surrogate pair is missing.
std::optional<std::string> decodedUTF16(std::string_view bytes);

}  // namespace quarn::XMLEncoding
