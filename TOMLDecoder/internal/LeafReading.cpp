#include "TOMLDecoder/internal/LeafReading.h"

#include "TOMLDecoder/TOMLError.h"
#include "TOMLDecoder/internal/DateCounting.h"

namespace toml::LeafReading {

namespace {

using Kind = TOMLError::Reason::Kind;

TOMLError::Reason mismatch(const TOMLKey* key, const char* expected, const char* found) {
  const std::string types = std::string(expected) + ", found " + found;
  if (!key) return {.kind = Kind::typeMismatch, .message = "Expected " + types, .found = found};
  TOMLError::Reason why = mismatchAt(*key, expected, found);
  if (key->isSuper()) why.message = "Type mismatch at table key for 'super': expected " + types;
  return why;
}

Date dateOfValue(const DecodingState& state, TextRange value) {
  const TOMLDocument& document = state.document;
  const Calendar calendar = state.strategy.date.counting;
  const int start = state.strategy.timeInterval == TimeIntervalStrategy::since2001 ? 2001 : 1970;
  switch (valueKindOf(document.text(value))) {
    case ValueKind::offsetDateTime: {
      const auto moment = unpackValue<OffsetDateTime>(document, value);
      return dateOf(calendar, moment.date, moment.time, moment.offset);
    }
    case ValueKind::localDateTime: {
      const auto moment = unpackValue<LocalDateTime>(document, value);
      return dateOf(calendar, moment.date, moment.time, 0);
    }
    case ValueKind::localDate:
      return dateOf(calendar, unpackValue<LocalDate>(document, value), {0, 0, 0}, 0);
    case ValueKind::integer:
      return dateAfter(start, unpackValue<std::int64_t>(document, value));
    case ValueKind::floatingPoint:
      return dateAfter(start, unpackValue<double>(document, value));
    default:
      throw TOMLError({.kind = Kind::invalidDateTime3,
                       .message = "No date components found.",
                       .found = nameOf(document, {{Entry::Kind::value, 0}, value, value.offset})});
  }
}

}  // namespace

Date date(const DecodingState& state, TextRange value) {
  try {
    return dateOfValue(state, value);
  } catch (const TOMLError& error) {
    throw error.at(state.document.lineNumber(value.offset));
  }
}

void checkIsValue(const DecodingState& state, const Content& content, const TOMLKey* key,
                  const char* expected, bool isDateRecord) {
  if (content.entry.kind == Entry::Kind::value) return;
  if (!key && isDateRecord) throw TOMLError({.kind = Kind::notReallyCodable});
  throw TOMLError(mismatch(key, expected, nameOf(state.document, content)))
      .at(state.document.lineNumber(content.place));
}

}  // namespace toml::LeafReading
