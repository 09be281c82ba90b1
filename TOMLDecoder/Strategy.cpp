#include "TOMLDecoder/Strategy.h"

#include "TOMLDecoder/TOMLError.h"

namespace toml {

namespace {

char upper(char byte) {
  return byte >= 'a' && byte <= 'z' ? static_cast<char>(byte - 'a' + 'A') : byte;
}
char lower(char byte) {
  return byte >= 'A' && byte <= 'Z' ? static_cast<char>(byte - 'A' + 'a') : byte;
}

/// Of a text that neither begins nor ends with an underscore. A key of one word stays as it is.
std::string joinedWords(std::string_view words) {
  if (words.find('_') == std::string_view::npos) return std::string(words);
  std::string joined;
  bool isFirstWord = true;
  bool startsWord = false;
  for (const char byte : words) {
    if (byte == '_') {
      isFirstWord = false;
      startsWord = true;
    } else {
      joined += startsWord && !isFirstWord ? upper(byte) : lower(byte);
      startsWord = false;
    }
  }
  return joined;
}

std::string camelCase(std::string_view key) {
  const std::size_t first = key.find_first_not_of('_');
  if (first == std::string_view::npos) return std::string(key);
  const std::size_t behind = key.find_last_not_of('_') + 1;
  return std::string(key.substr(0, first)) + joinedWords(key.substr(first, behind - first)) +
         std::string(key.substr(behind));
}

}  // namespace

KeyStrategy KeyStrategy::convertFromSnakeCase() {
  return {camelCase};
}

DateStrategy DateStrategy::calendar(std::string_view identifier) {
  if (identifier == "gregorian") return gregorianCalendar();
  if (identifier == "iso8601") return prolepticGregorianCalendar();
  if (identifier == "buddhist") return {{543, false}};
  if (identifier == "roc") return {{-1911, false}};
  throw TOMLError({.kind = TOMLError::Reason::Kind::invalidDateTimeComponents,
                   .message = "the calendar '" + std::string(identifier) + "' is unknown"});
}

}  // namespace toml
