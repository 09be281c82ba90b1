#pragma once

#include <cstdint>
#include <exception>
#include <string>
#include <string_view>
#include <vector>

#include "TOMLDecoder/TOMLKey.h"

namespace toml {

/// Everything that parsing, reading and decoding throw.
class TOMLError : public std::exception {
 public:
  struct Reason {
    enum class Kind {
      arrayOutOfBound,            ///< `index`, `bound`
      badKey,                     ///< `lineNumber`
      expectedHexCharacters,      ///< `found`
      illegalEscapeCharacter,     ///< `found`
      illegalUCSCode,             ///< `found`
      internalError,              ///< `lineNumber`: a fault of the reader; none is known
      invalidBool,                ///< `found`
      invalidCharacter,           ///< `found`
      invalidDateTime,            ///< `message`: the text breaks a rule of dates and times
      invalidDateTime3,           ///< `message`: a date or time, but not of the kind that was asked for
      invalidDateTimeComponents,  ///< `message`: numbers that make no date or time
      invalidFloat,               ///< `message`
      invalidHexCharacters,       ///< `found`
      invalidInteger,             ///< `message`
      invalidNumber,              ///< `message`: a number that the type asked for can't hold
      invalidString,              ///< `found`
      invalidValueInTable,        ///< `key`, `found`: no value of any kind
      keyExists,                  ///< `lineNumber`
      keyNotFoundInTable,         ///< `key`, `expected`
      syntax,                     ///< `lineNumber`, `message`
      typeMismatch,               ///< `message`
      typeMismatchInArray,        ///< `lineNumber`, `index`, `expected`
      typeMismatchInTable,        ///< `key`, `expected`
      invalidUTF8,                ///< `lineNumber`
      notReallyCodable,
    };

    Kind kind;
    std::uint32_t lineNumber = 0;  ///< the first line is 1; 0 where no line is to blame
    std::string message{};         ///< of a case that isn't said to have one: in place of its own text
    std::string found{};
    std::string key{};
    std::string expected{};
    std::size_t index = 0;
    std::size_t bound = 0;

    bool operator==(const Reason&) const = default;
  };

  explicit TOMLError(Reason why);

  /// "(Line 3) Syntax error: bare carriage return is not allowed"; without the line where there is none.
  std::string text() const;
  /// The text, and behind it the coding path if there is one.
  const char* what() const noexcept override { return what_.c_str(); }

  /// The same error with what a caller further out knows; what is known already stays.
  TOMLError at(std::uint32_t lineNumber) const;
  TOMLError at(std::vector<TOMLKey> path) const;

  Reason reason;
  std::vector<TOMLKey> codingPath;  ///< empty for all that doesn't come from decoding a record

 private:
  void tell();

  std::string what_;
};

}  // namespace toml
