#include "QuarnCore/foundation/JsonDecoder.h"

namespace quarn {

void JsonDecoder::decode(const Json& json, bool& value) {
  take(json.flag() ? std::optional(*json.flag()) : std::nullopt, value);
}

void JsonDecoder::decode(const Json& json, std::int64_t& value) {
  take(json.integer(), value);
}

void JsonDecoder::decode(const Json& json, double& value) {
  take(json.number(), value);
}

void JsonDecoder::decode(const Json& json, std::string& value) {
  take(json.text() ? std::optional(*json.text()) : std::nullopt, value);
}

void JsonDecoder::decode(const Json& json, Moment& value) {
  std::optional<Moment> moment;
  if (dates_ == DateForm::iso8601 && json.text()) moment = DateText::parsingISO8601(*json.text());
  if (dates_ == DateForm::secondsSince2001 && json.number())
    moment = DateText::fromSecondsSince2001(*json.number());
  take(moment, value);
}

void JsonDecoder::fail(PlatformError (*error)(const std::string& keyPath)) {
  if (!failure_) failure_ = error(path_.text());
}

}  // namespace quarn
