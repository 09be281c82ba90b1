#include "TOMLDecoder/TOMLItem.h"

#include "TOMLDecoder/TOMLArray.h"
#include "TOMLDecoder/TOMLTable.h"

namespace toml {

ValueKind TOMLItem::valueKind() const {
  if (!isValue()) failAsType("value");
  const ValueKind kind = valueKindOf(source_->text(content_.token));
  if (kind == ValueKind::invalid) {
    DirectReading::failAsInvalid(*source_, container_, key_, content_.token);
  }
  return kind;
}

TOMLTable TOMLItem::table() const {
  if (!isTable()) failAsType("table");
  return {source_, content_.entry.index, false};
}

TOMLArray TOMLItem::array() const {
  if (!isArray()) failAsType("array");
  return {source_, content_.entry.index, false};
}

void TOMLItem::fail(std::string message) const {
  const TOMLError error({.kind = TOMLError::Reason::Kind::typeMismatch,
                         .lineNumber = source_->lineNumber(content_.place),
                         .message = std::move(message)});
  throw DirectReading::located(*source_, container_, key_, error);
}

void TOMLItem::failAsType(const char* expected) const {
  DirectReading::failAsType(*source_, container_, key_, content_, expected);
}

}  // namespace toml
