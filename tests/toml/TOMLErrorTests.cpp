#include <gtest/gtest.h>

#include "TOMLDecoder/TOMLError.h"

using toml::TOMLError;
using Kind = toml::TOMLError::Reason::Kind;

TEST(TOMLError, everyReasonHasItsText) {
  const std::pair<TOMLError::Reason, std::string> rows[] = {
      {{.kind = Kind::arrayOutOfBound, .index = 5, .bound = 3}, "Array index 5 is out of bounds (0..<3)"},
      {{.kind = Kind::badKey, .lineNumber = 7}, "(Line 7) Ill-formed key."},
      {{.kind = Kind::expectedHexCharacters, .lineNumber = 1, .found = "1"},
       "(Line 1) Expected hexadecimal characters, found '1'"},
      {{.kind = Kind::illegalEscapeCharacter, .found = "q"}, "Illegal escape character 'q'"},
      {{.kind = Kind::illegalUCSCode, .found = "D800"}, "Illegal UCS code 'D800'"},
      {{.kind = Kind::internalError, .lineNumber = 2}, "(Line 2) Internal error."},
      {{.kind = Kind::invalidBool, .message = "True"}, "Invalid boolean: True"},
      {{.kind = Kind::invalidCharacter, .found = "!"}, "Invalid character '!'"},
      {{.kind = Kind::invalidDateTime, .message = "expected valid time"},
       "Invalid date-time: expected valid time"},
      {{.kind = Kind::invalidDateTime3, .message = "timezone parsing error"},
       "Invalid date-time: timezone parsing error"},
      {{.kind = Kind::invalidDateTimeComponents, .message = "hour must be between 00 and 23"},
       "Invalid date-time components: hour must be between 00 and 23"},
      {{.kind = Kind::invalidFloat, .message = "A digit must follow '.'"},
       "Invalid float: A digit must follow '.'"},
      {{.kind = Kind::invalidHexCharacters, .found = "00G0"}, "Invalid hexadecimal characters '00G0'"},
      {{.kind = Kind::invalidInteger, .message = "cannot end with a '_'"},
       "Invalid integer: cannot end with a '_'"},
      {{.kind = Kind::invalidNumber, .message = "300"}, "Invalid number: 300"},
      {{.kind = Kind::invalidString, .message = "1"}, "Invalid string: 1"},
      {{.kind = Kind::invalidValueInTable, .lineNumber = 3, .found = "x", .key = "a"},
       "(Line 3) The given data was not valid TOML. Key 'a' has the value 'x'"},
      {{.kind = Kind::keyExists, .lineNumber = 4}, "(Line 4) Key already exists."},
      {{.kind = Kind::keyNotFoundInTable, .key = "a", .expected = "table"},
       "Key 'a' not found in table while looking for table"},
      {{.kind = Kind::syntax, .lineNumber = 5, .message = "missing closing quote"},
       "(Line 5) Syntax error: missing closing quote"},
      {{.kind = Kind::typeMismatch, .message = "Element is not a table."}, "Element is not a table."},
      {{.kind = Kind::typeMismatchInArray, .lineNumber = 6, .expected = "array", .index = 1},
       "(Line 6) Type mismatch at array index 1: expected array"},
      {{.kind = Kind::typeMismatchInTable, .key = "a", .expected = "array"},
       "Type mismatch at table key 'a': expected array"},
      {{.kind = Kind::invalidUTF8}, "The given data was not valid UTF8."},
      {{.kind = Kind::notReallyCodable},
       "This type is not generally codable. Use TOMLDecoder to decode it as part of a larger Codable."},
  };
  for (const auto& [reason, text] : rows) EXPECT_EQ(TOMLError(reason).text(), text);
}

TEST(TOMLError, theReasonsStandInTheirOrder) {
  EXPECT_EQ(static_cast<int>(Kind::arrayOutOfBound), 0);
  EXPECT_LT(Kind::invalidDateTimeComponents, Kind::invalidFloat);
  EXPECT_LT(Kind::keyNotFoundInTable, Kind::syntax);
  EXPECT_EQ(static_cast<int>(Kind::notReallyCodable), 24);
}

TEST(TOMLError, aLineAndAPathThatAreKnownStay) {
  const TOMLError error({.kind = Kind::badKey});
  EXPECT_EQ(error.at(3).at(9).reason.lineNumber, 3u);
  const std::vector<toml::TOMLKey> inner = {{"a"}, {std::size_t{2}}, {"b"}};
  const std::vector<toml::TOMLKey> outer = {{"a"}};
  EXPECT_EQ(error.at(inner).at(outer).codingPath, inner);
  EXPECT_STREQ(error.at(3).at(inner).what(), "(Line 3) Ill-formed key. (at a[2].b)");
  EXPECT_EQ(error.at(3).at(inner).text(), "(Line 3) Ill-formed key.");
}
