#include "TOMLDecoder/TOMLError.h"

#include <utility>

namespace toml {

namespace {

using Reason = TOMLError::Reason;

std::string mismatchText(const Reason& why) {
  return "expected " + why.expected + (why.found.empty() ? "" : ", found " + why.found);
}

std::string placeText(const Reason& why) {
  if (!why.message.empty()) return why.message;
  switch (why.kind) {
    case Reason::Kind::arrayOutOfBound:
      return "Array index " + std::to_string(why.index) + " is out of bounds (0..<" +
             std::to_string(why.bound) + ")";
    case Reason::Kind::typeMismatchInArray:
      return "Type mismatch at array index " + std::to_string(why.index) + ": " + mismatchText(why);
    case Reason::Kind::typeMismatchInTable:
      return "Type mismatch at table key '" + why.key + "': " + mismatchText(why);
    case Reason::Kind::invalidValueInTable:
      return "The given data was not valid TOML. Key '" + why.key + "' has the value '" + why.found + "'";
    default:
      return "Key '" + why.key + "' not found in table while looking for " + why.expected;
  }
}

std::string characterText(const Reason& why) {
  switch (why.kind) {
    case Reason::Kind::expectedHexCharacters:
      return "Expected hexadecimal characters, found '" + why.found + "'";
    case Reason::Kind::illegalEscapeCharacter:
      return "Illegal escape character '" + why.found + "'";
    case Reason::Kind::illegalUCSCode:
      return "Illegal UCS code '" + why.found + "'";
    case Reason::Kind::invalidHexCharacters:
      return "Invalid hexadecimal characters '" + why.found + "'";
    default:
      return "Invalid character '" + why.found + "'";
  }
}

std::string valueText(const Reason& why) {
  switch (why.kind) {
    case Reason::Kind::invalidBool:
      return "Invalid boolean: " + why.message;
    case Reason::Kind::invalidDateTime:
    case Reason::Kind::invalidDateTime3:
      return "Invalid date-time: " + why.message;
    case Reason::Kind::invalidDateTimeComponents:
      return "Invalid date-time components: " + why.message;
    case Reason::Kind::invalidFloat:
      return "Invalid float: " + why.message;
    case Reason::Kind::invalidInteger:
      return "Invalid integer: " + why.message;
    case Reason::Kind::invalidNumber:
      return "Invalid number: " + why.message;
    default:
      return "Invalid string: " + why.message;
  }
}

std::string reasonText(const Reason& why) {
  using Kind = Reason::Kind;
  switch (why.kind) {
    case Kind::badKey:
      return "Ill-formed key.";
    case Kind::internalError:
      return "Internal error.";
    case Kind::keyExists:
      return "Key already exists.";
    case Kind::syntax:
      return "Syntax error: " + why.message;
    case Kind::typeMismatch:
      return why.message;
    case Kind::invalidUTF8:
      return "The given data was not valid UTF8.";
    case Kind::notReallyCodable:
      return "This type is not generally codable. Use TOMLDecoder to decode it as part of a larger Codable.";
    case Kind::arrayOutOfBound:
    case Kind::typeMismatchInArray:
    case Kind::typeMismatchInTable:
    case Kind::invalidValueInTable:
    case Kind::keyNotFoundInTable:
      return placeText(why);
    case Kind::expectedHexCharacters:
    case Kind::illegalEscapeCharacter:
    case Kind::illegalUCSCode:
    case Kind::invalidHexCharacters:
    case Kind::invalidCharacter:
      return characterText(why);
    default:
      return valueText(why);
  }
}

/// Whether what stands in place of the type asked for is known, and the text has no words for it.
bool leavesOutFound(const Reason& why, const std::string& text) {
  using Kind = Reason::Kind;
  switch (why.kind) {
    case Kind::invalidBool:
    case Kind::invalidDateTime:
    case Kind::invalidDateTime3:
    case Kind::invalidFloat:
    case Kind::invalidInteger:
    case Kind::invalidNumber:
    case Kind::invalidString:
    case Kind::typeMismatch:
      return !why.found.empty() && text.find("found " + why.found) == std::string::npos;
    default:
      return false;
  }
}

std::string lineText(std::uint32_t line) {
  return line > 0 ? "(Line " + std::to_string(line) + ") " : "";
}

}  // namespace

TOMLError::TOMLError(Reason why) : reason(std::move(why)), lineNumber(reason.lineNumber) {
  tell();
}

std::string TOMLError::text() const {
  return lineText(reason.lineNumber) + reasonText(reason);
}

TOMLError TOMLError::at(std::uint32_t line) const {
  TOMLError located = *this;
  if (located.reason.lineNumber == 0) located.reason.lineNumber = line;
  if (located.lineNumber == 0) located.lineNumber = line;
  located.tell();
  return located;
}

TOMLError TOMLError::at(std::vector<TOMLKey> path) const {
  TOMLError located = *this;
  if (located.codingPath.empty()) located.codingPath = std::move(path);
  located.tell();
  return located;
}

TOMLError TOMLError::within(std::uint32_t line) const {
  TOMLError located = *this;
  if (located.lineNumber == 0) located.lineNumber = line;
  located.tell();
  return located;
}

TOMLError TOMLError::instead(std::string_view found) const {
  TOMLError complete = *this;
  if (complete.reason.found.empty()) complete.reason.found = found;
  complete.tell();
  return complete;
}

void TOMLError::tell() {
  const std::string said = text();
  std::string details = leavesOutFound(reason, said) ? "found " + reason.found : "";
  if (!codingPath.empty()) details += (details.empty() ? "at " : ", at ") + path();
  what_ = (reason.lineNumber == 0 ? lineText(lineNumber) : "") + said;
  if (!details.empty()) what_ += " (" + details + ")";
}

}  // namespace toml
