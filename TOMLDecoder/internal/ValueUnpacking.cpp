#include "TOMLDecoder/internal/ValueUnpacking.h"

#include "TOMLDecoder/TOMLError.h"
#include "TOMLDecoder/internal/DateTimeScanner.h"
#include "TOMLDecoder/internal/Unpacking.h"

namespace toml {

namespace {

bool unpackBoolean(std::string_view token) {
  if (token == "true") return true;
  if (token == "false") return false;
  throw TOMLError({.kind = TOMLError::Reason::Kind::invalidBool, .message = std::string(token)});
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

/// An empty text for a value of no kind.
const char* nameOf(ValueKind kind) {
  switch (kind) {
    case ValueKind::string:
      return typeName<std::string>;
    case ValueKind::boolean:
      return typeName<bool>;
    case ValueKind::offsetDateTime:
      return typeName<OffsetDateTime>;
    case ValueKind::localDateTime:
      return typeName<LocalDateTime>;
    case ValueKind::localDate:
      return typeName<LocalDate>;
    case ValueKind::localTime:
      return typeName<LocalTime>;
    case ValueKind::floatingPoint:
      return typeName<double>;
    case ValueKind::integer:
      return typeName<std::int64_t>;
    case ValueKind::invalid:
      break;
  }
  return "";
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

const char* nameOf(const TOMLDocument& document, const Content& content) {
  if (content.entry.kind == Entry::Kind::table) return "table";
  if (content.entry.kind == Entry::Kind::array) return "array";
  const char* const name = nameOf(valueKindOf(document.text(content.token)));
  return *name == '\0' ? "value" : name;
}

TOMLError::Reason mismatchAt(const TOMLKey& key, const char* expected, const char* found) {
  using Kind = TOMLError::Reason::Kind;
  if (const std::size_t* const index = key.integer()) {
    return {.kind = Kind::typeMismatchInArray, .found = found, .expected = expected, .index = *index};
  }
  return {.kind = Kind::typeMismatchInTable, .found = found, .key = key.text(), .expected = expected};
}

template <ReadableValue T>
T unpackValue(const TOMLDocument& document, TextRange value) {
  try {
    return unpackToken<T>(document.text(value));
  } catch (const TOMLError& error) {
    const std::string_view found = nameOf(valueKindOf(document.text(value)));
    throw error.at(document.lineNumber(value.offset)).instead(found == typeName<T> ? "" : found);
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
