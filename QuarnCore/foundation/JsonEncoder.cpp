#include "QuarnCore/foundation/JsonEncoder.h"

#include <cmath>

#include "Platform/Text.h"

namespace quarn {

Json JsonEncoder::encode(double value) {
  if (std::isfinite(value)) return value;
  fail();
  return {};
}

Json JsonEncoder::encode(const std::string& value) {
  expectText(value);
  return value;
}

Json JsonEncoder::encode(Moment value) {
  if (dates_ == DateForm::iso8601) return DateText::iso8601(value);
  return DateText::secondsSince2001(value);
}

void JsonEncoder::expectText(std::string_view bytes) {
  if (!Text::isUTF8(bytes)) fail();
}

void JsonEncoder::fail() {
  if (!failure_) failure_ = StoredJsonError::notStorable(path_.text());
}

}  // namespace quarn
