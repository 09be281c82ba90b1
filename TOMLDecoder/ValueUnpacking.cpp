#include "TOMLDecoder/ValueUnpacking.h"

#include "TOMLDecoder/DateTimeScanner.h"
#include "TOMLDecoder/FloatUnpacking.h"
#include "TOMLDecoder/IntegerUnpacking.h"
#include "TOMLDecoder/StringUnpacking.h"
#include "TOMLDecoder/TOMLError.h"

namespace toml {

namespace {

bool unpackBoolean(std::string_view token) {
  if (token == "true") return true;
  if (token == "false") return false;
  throw TOMLError({.kind = TOMLError::Reason::Kind::invalidBool, .found = std::string(token)});
}

template <typename T>
T unpackToken(std::string_view token) {
  if constexpr (std::is_same_v<T, std::string>) {
    return StringUnpacking::unpack(token);
  } else if constexpr (std::is_same_v<T, std::int64_t>) {
    return IntegerUnpacking::unpack(token);
  } else if constexpr (std::is_same_v<T, double>) {
    return FloatUnpacking::unpack(token);
  } else if constexpr (std::is_same_v<T, bool>) {
    return unpackBoolean(token);
  } else {
    return T::parse(token);
  }
}

ValueKind dateTimeKind(std::string_view token) {
  if (token[2] == ':') return ValueKind::localTime;
  if (token.size() <= 10) return ValueKind::localDate;
  const bool hasOffset = token.substr(10).find_first_of("Zz+-") != std::string_view::npos;
  return hasOffset ? ValueKind::offsetDateTime : ValueKind::localDateTime;
}

bool isNumberStart(char byte) {
  return (byte >= '0' && byte <= '9') || byte == '+' || byte == '-' || byte == '.';
}

}  // namespace

ValueKind valueKindOf(std::string_view token) {
  if (token.empty()) return ValueKind::invalid;
  if (token.front() == '"' || token.front() == '\'') return ValueKind::string;
  if (token == "true" || token == "false") return ValueKind::boolean;
  if (DateTimeScanner::looksLikeDateTime(token)) return dateTimeKind(token);
  if (token == "inf" || token == "nan") return ValueKind::floatingPoint;
  if (!isNumberStart(token.front())) return ValueKind::invalid;
  const std::string_view number = token.substr(token.front() == '+' || token.front() == '-' ? 1 : 0);
  const std::string_view prefix = number.substr(0, 2);
  if (prefix == "0x" || prefix == "0o" || prefix == "0b") return ValueKind::integer;
  return number.find_first_of(".eEin") == std::string_view::npos ? ValueKind::integer
                                                                 : ValueKind::floatingPoint;
}

ValueKind checkedValueKind(const TOMLDocument& document, TextRange value, std::string_view key) {
  const std::string_view token = document.text(value);
  const ValueKind kind = valueKindOf(token);
  if (kind == ValueKind::invalid) {
    throw TOMLError({.kind = TOMLError::Reason::Kind::invalidValueInTable,
                     .lineNumber = document.lineNumber(value.offset),
                     .found = std::string(token),
                     .key = std::string(key)});
  }
  return kind;
}

template <ReadableValue T>
T unpackValue(const TOMLDocument& document, TextRange value) {
  try {
    return unpackToken<T>(document.text(value));
  } catch (const TOMLError& error) {
    throw error.at(document.lineNumber(value.offset));
  }
}

template std::string unpackValue(const TOMLDocument&, TextRange);
template std::int64_t unpackValue(const TOMLDocument&, TextRange);
template double unpackValue(const TOMLDocument&, TextRange);
template bool unpackValue(const TOMLDocument&, TextRange);
template OffsetDateTime unpackValue(const TOMLDocument&, TextRange);
template LocalDateTime unpackValue(const TOMLDocument&, TextRange);
template LocalDate unpackValue(const TOMLDocument&, TextRange);
template LocalTime unpackValue(const TOMLDocument&, TextRange);

}  // namespace toml
